#pragma once

#include <QLoggingCategory>

/// Of the debug log, what the drivers write there: failures that no call could answer with.
Q_DECLARE_LOGGING_CATEGORY(equipmentLog)
