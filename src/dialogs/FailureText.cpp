#include "dialogs/FailureText.h"

#include <QCoreApplication>

#include <array>
#include <cstddef>

namespace {

/// For the translators. scripts/check-translations.py finds what is missing here.
[[maybe_unused]] constexpr const char* plainTexts[] = {
    // Ports and devices
    QT_TRANSLATE_NOOP("Failure", "Port not found"),
    QT_TRANSLATE_NOOP("Failure", "Invalid port"),
    QT_TRANSLATE_NOOP("Failure", "Port already in use"),
    QT_TRANSLATE_NOOP("Failure", "Connect failed"),
    QT_TRANSLATE_NOOP("Failure", "GetCommState failed"),
    QT_TRANSLATE_NOOP("Failure", "SetCommState failed"),
    QT_TRANSLATE_NOOP("Failure", "GetCommTimeouts failed"),
    QT_TRANSLATE_NOOP("Failure", "SetCommTimeouts failed"),
    QT_TRANSLATE_NOOP("Failure", "SetupComm failed"),
    QT_TRANSLATE_NOOP("Failure", "PurgeComm failed"),
    QT_TRANSLATE_NOOP("Failure", "Cannot create pipe"),
    QT_TRANSLATE_NOOP("Failure", "Device not found"),
    QT_TRANSLATE_NOOP("Failure", "Device read error"),
    QT_TRANSLATE_NOOP("Failure", "No se pudo abrir el puerto (CreateFile)"),
    QT_TRANSLATE_NOOP("Failure", "Kipnet device did not respond (command GO)"),
    QT_TRANSLATE_NOOP("Failure", "Kipnet device did not respond (command ST)"),
    QT_TRANSLATE_NOOP("Failure", "Kipnet device did not respond (command V)"),
    QT_TRANSLATE_NOOP("Failure", "Kipnet device did not respond (command E)"),
    QT_TRANSLATE_NOOP("Failure", "Kipnet device did not respond (command N)"),
    // Files
    QT_TRANSLATE_NOOP("Failure", "Cannot open file"),
    QT_TRANSLATE_NOOP("Failure", "Cannot create file"),
    QT_TRANSLATE_NOOP("Failure", "Cannot create study file"),
    QT_TRANSLATE_NOOP("Failure", "Write error"),
    QT_TRANSLATE_NOOP("Failure", "Cannot open protocol table"),
    QT_TRANSLATE_NOOP("Failure", "Cannot read protocol table"),
    QT_TRANSLATE_NOOP("Failure", "SQLite driver not available"),
    QT_TRANSLATE_NOOP("Failure", "Undefined database path"),
    QT_TRANSLATE_NOOP("Failure", "Study is open"),
    QT_TRANSLATE_NOOP("Failure", "unimplemented"),
    // Archives
    QT_TRANSLATE_NOOP("Failure", "File is not a valid Velantor study Zip archive"),
    QT_TRANSLATE_NOOP("Failure", "Cannot create zip archive"),
    QT_TRANSLATE_NOOP("Failure", "Cannot open new file in zip"),
    QT_TRANSLATE_NOOP("Failure", "Cannot write data in zip file"),
    QT_TRANSLATE_NOOP("Failure", "Cannot close file in zip"),
    QT_TRANSLATE_NOOP("Failure", "Cannot close zip archive"),
    QT_TRANSLATE_NOOP("Failure", "Cannot open zip archive"),
    QT_TRANSLATE_NOOP("Failure", "Cannot read zip archive"),
    QT_TRANSLATE_NOOP("Failure", "Cannot read comment in zip archive"),
    QT_TRANSLATE_NOOP("Failure", "Cannot read file in zip archive"),
    QT_TRANSLATE_NOOP("Failure", "Corrupt file read from zip archive"),
    QT_TRANSLATE_NOOP("Failure", "Cannot get file info from zip archive"),
    QT_TRANSLATE_NOOP("Failure", "Cannot open file in zip archive"),
    // Records of other programs
    QT_TRANSLATE_NOOP("Failure", "Cannot read WFDB header"),
    QT_TRANSLATE_NOOP("Failure", "Cannot read WFDB signal file"),
    QT_TRANSLATE_NOOP("Failure", "Cannot read WFDB annotations"),
    QT_TRANSLATE_NOOP("Failure", "Cannot resample WFDB record"),
    QT_TRANSLATE_NOOP("Failure", "WFDB record has no ECG"),
    QT_TRANSLATE_NOOP("Failure", "WFDB record has no samples"),
    QT_TRANSLATE_NOOP("Failure", "WFDB record has more than 16 signals"),
    QT_TRANSLATE_NOOP("Failure", "WFDB record has less than 50 samples a second"),
    QT_TRANSLATE_NOOP("Failure", "WFDB record is longer than 14 days"),
    // Whatever else
    QT_TRANSLATE_NOOP("Failure", "Unexpected error"),
    QT_TRANSLATE_NOOP("Failure", "Unspecified application error"),
    QT_TRANSLATE_NOOP("Failure", "pendiente - filtro no definido"),
};

/// Texts with a part that is known only when the failure happens, at their end. Often it is a failure's text.
constexpr std::array<const char*, 2> frames = {
    QT_TRANSLATE_NOOP("Failure", "Error: %1"),
    QT_TRANSLATE_NOOP("Failure", "Unknown protocol %1"),
};

QString translated(const char* utf8)
{
    return QCoreApplication::translate("Failure", utf8);
}

} // namespace

QString failureText(const char* utf8)
{
    for (const char* frame : frames) {
        const std::size_t start = qstrlen(frame) - qstrlen("%1");
        if (qstrncmp(utf8, frame, uint(start)) == 0)
            return translated(frame).arg(failureText(utf8 + start));
    }
    return translated(utf8);
}
