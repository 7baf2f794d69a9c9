#include "cli/TEquipmentTexts.h"

#include "equipment/EquipmentLog.h"

#include <QString>

#include <mutex>
#include <utility>

namespace {

// The log knows functions alone.
std::mutex mutex;
QByteArrayList texts;
QtMessageHandler handlerBefore = nullptr;

bool isOfEquipment(const QMessageLogContext& context)
{
    return qstrcmp(context.category, equipmentLog().categoryName()) == 0;
}

void handle(QtMsgType type, const QMessageLogContext& context, const QString& text)
{
    if (isOfEquipment(context)) {
        const std::lock_guard<std::mutex> lock(mutex);
        texts << text.toUtf8();
    } else if (handlerBefore) {
        handlerBefore(type, context, text);
    }
}

} // namespace

TEquipmentTexts::TEquipmentTexts()
{
    take();
    // Without one of its own Qt names its usual one, which can be called like any other.
    handlerBefore = qInstallMessageHandler(handle);
}

TEquipmentTexts::~TEquipmentTexts()
{
    qInstallMessageHandler(handlerBefore);
}

QByteArrayList TEquipmentTexts::take()
{
    const std::lock_guard<std::mutex> lock(mutex);
    return std::exchange(texts, {});
}
