#pragma once

/// Registers the icons (:/res/...) and the style sheets (:/styles/...), which the linker would otherwise
/// leave out with the rest of a static library. Any number of calls has the effect of one.
void initResources();
