#pragma once

#include <QByteArray>

/// The annotation codes of the MIT format that this program looks at, and the one-character names under which
/// annotations are known (WFDB Applications Guide, annotation codes).
namespace wfdb {

inline constexpr int codeCount = 50;

/// What stands for a code, such as "N" or "("; empty for a code without a name.
QByteArray mnemonicOf(int code);
/// The code of a name; 0 if there is none.
int codeOf(char mnemonic);

/// Whether the code tells of a beat: N L R B A a J S V r F e j n E / f Q ?.
bool isBeat(int code);

} // namespace wfdb
