#include "tour/TourDriver.h"

#include <QAbstractButton>
#include <QAbstractItemView>
#include <QContextMenuEvent>
#include <QDir>
#include <QElapsedTimer>
#include <QLabel>
#include <QLineEdit>
#include <QListWidget>
#include <QMessageBox>
#include <QScreen>
#include <QScrollBar>
#include <QThread>
#include <QtTest>

namespace {

constexpr int stepMs = 20;
/// Longer than any animation of ours.
constexpr int settleMs = 400;
/// More controls than any window of ours lets the tab key reach.
constexpr int mostTabs = 80;

[[noreturn]] void fail(const QString& text)
{
    throw TTourError(text.toStdString());
}

QWidget* windowOf(const char* className)
{
    for (QWidget* window : QApplication::topLevelWidgets()) {
        if (window->isVisible() && window->inherits(className))
            return window;
    }
    return nullptr;
}

/// The windows that take input: those of a modal dialog, else all that are to be seen.
QWidgetList usableWindows()
{
    if (QWidget* modal = QApplication::activeModalWidget())
        return {modal};
    QWidgetList windows;
    for (QWidget* window : QApplication::topLevelWidgets()) {
        if (window->isVisible() && window->isEnabled())
            windows.append(window);
    }
    return windows;
}

/// Does something on the main thread without waiting for its end, which a dialog may put off.
template <typename Work> void post(Work work)
{
    QMetaObject::invokeMethod(qApp, work, Qt::QueuedConnection);
}

/// Also letters that no key of a plain keyboard has.
void typeText(QWidget* widget, const QString& text)
{
    for (const QChar letter : text)
        QTest::sendKeyEvent(QTest::Click, widget, Qt::Key_unknown, QString(letter), Qt::NoModifier);
}

bool isCut(const QWidget* widget)
{
    if (const auto* view = qobject_cast<const QAbstractItemView*>(widget))
        return view->horizontalScrollBar()->isVisible();
    if (const auto* label = qobject_cast<const QLabel*>(widget)) {
        if (label->text().isEmpty() || label->inherits("ElidedLabel"))
            return false;
        const QSize needed =
            label->wordWrap() ? QSize(0, label->heightForWidth(label->width())) : label->sizeHint();
        return needed.width() > label->width() || needed.height() > label->height();
    }
    const auto* button = qobject_cast<const QAbstractButton*>(widget);
    return button && !button->text().isEmpty() && button->minimumSizeHint().width() > button->width();
}

QStringList cutTextsOf(const QWidget* window)
{
    QStringList cut;
    if (!window->screen()->geometry().contains(window->frameGeometry()))
        cut.append(QStringLiteral("%1, which is larger than the screen")
                       .arg(QString::fromLatin1(window->metaObject()->className())));
    for (const QWidget* widget : window->findChildren<QWidget*>()) {
        if (widget->isVisible() && isCut(widget))
            cut.append(
                QStringLiteral("%1 of %2")
                    .arg(widget->objectName(), QString::fromLatin1(window->metaObject()->className())));
    }
    return cut;
}

} // namespace

TourDriver::TourDriver(const QString& folder) : m_folder(folder)
{
    QDir(folder).removeRecursively();
    if (!QDir().mkpath(folder))
        fail(QStringLiteral("Cannot make the folder ") + folder);
}

QWidget* TourDriver::find(const char* name)
{
    for (QWidget* window : usableWindows()) {
        const QString wanted = QString::fromLatin1(name);
        for (QWidget* widget : window->findChildren<QWidget*>(wanted)) {
            if (widget->isVisible())
                return widget;
        }
    }
    return nullptr;
}

void TourDriver::waitFor(const QString& what, const std::function<bool()>& condition, int timeoutMs)
{
    QElapsedTimer timer;
    timer.start();
    while (!onScreen(condition)) {
        if (timer.elapsed() > timeoutMs)
            fail(QStringLiteral("Waited in vain for: ") + what);
        QThread::msleep(stepMs);
    }
}

void TourDriver::waitForWindow(const char* className)
{
    waitFor(QString::fromLatin1(className),
            [className] { return windowOf(className) && windowOf(className)->isEnabled(); });
}

void TourDriver::waitUntilGone(const char* className)
{
    waitFor(QStringLiteral("the end of ") + QString::fromLatin1(className),
            [className] { return windowOf(className) == nullptr; });
}

void TourDriver::pause(int ms)
{
    QThread::msleep(static_cast<unsigned long>(ms));
}

void TourDriver::click(const char* name)
{
    waitFor(QString::fromLatin1(name), [name] { return find(name) && find(name)->isEnabled(); });
    post([name] {
        if (QWidget* widget = find(name))
            QTest::mouseClick(widget, Qt::LeftButton);
    });
    pause(stepMs);
}

void TourDriver::openMenu(const char* name)
{
    waitFor(QString::fromLatin1(name), [name] { return find(name) != nullptr; });
    post([name] {
        QWidget* widget = find(name);
        const QPoint place(widget->width() / 3, widget->height() / 4);
        QContextMenuEvent event(QContextMenuEvent::Mouse, place, widget->mapToGlobal(place));
        QApplication::sendEvent(widget, &event);
    });
    waitFor(QStringLiteral("the menu of ") + QString::fromLatin1(name),
            [] { return QApplication::activePopupWidget() != nullptr; });
}

void TourDriver::type(const char* name, const QString& text)
{
    waitFor(QString::fromLatin1(name), [name] { return find(name) && find(name)->isEnabled(); });
    onScreen([name, &text] {
        auto* edit = qobject_cast<QLineEdit*>(find(name));
        if (!edit)
            return;
        edit->setFocus();
        edit->selectAll();
        if (text.isEmpty())
            QTest::keyClick(edit, Qt::Key_Delete);
        else
            typeText(edit, text);
    });
}

void TourDriver::chooseRow(const char* name, int row)
{
    waitFor(QString::fromLatin1(name), [name] { return qobject_cast<QListWidget*>(find(name)) != nullptr; });
    onScreen([name, row] { qobject_cast<QListWidget*>(find(name))->setCurrentRow(row); });
}

void TourDriver::key(Qt::Key key, Qt::KeyboardModifiers modifiers)
{
    post([key, modifiers] {
        QWidget* target = QApplication::activePopupWidget();
        if (!target)
            target = QApplication::focusWidget();
        if (target)
            QTest::keyClick(target, key, modifiers);
    });
    pause(stepMs);
}

void TourDriver::tabTo(const char* name)
{
    const auto hasFocus = [name] {
        const QWidget* focus = QApplication::focusWidget();
        return focus && focus->objectName() == QLatin1String(name);
    };
    for (int i = 0; i < mostTabs && !onScreen(hasFocus); ++i)
        key(Qt::Key_Tab);
    if (!onScreen(hasFocus))
        fail(QStringLiteral("The keyboard does not reach %1").arg(QString::fromLatin1(name)));
}

void TourDriver::typeAtFocus(const QString& text)
{
    onScreen([&text] {
        if (QWidget* focus = QApplication::focusWidget())
            typeText(focus, text);
    });
}

QString TourDriver::closeBox()
{
    const auto box = [] { return qobject_cast<QMessageBox*>(QApplication::activeModalWidget()); };
    waitFor(QStringLiteral("a message box"), [box] { return box() != nullptr; });
    const QString text = onScreen([box] { return box()->text(); });
    post([box] {
        if (QMessageBox* shown = box())
            QTest::keyClick(shown, Qt::Key_Return);
    });
    waitFor(QStringLiteral("the end of a message box"), [box] { return box() == nullptr; });
    return text;
}

void TourDriver::picture(const QString& name)
{
    pause(settleMs);
    const QImage image = onScreen([] { return QGuiApplication::primaryScreen()->grabWindow(0).toImage(); });
    const QString file =
        QStringLiteral("%1/%2-%3.png").arg(m_folder).arg(++m_pictures, 2, 10, QLatin1Char('0')).arg(name);
    if (image.isNull() || !image.save(file))
        fail(QStringLiteral("Cannot write ") + file);
    const QStringList cut = onScreen([] {
        QStringList all;
        for (const QWidget* window : QApplication::topLevelWidgets()) {
            if (window->isVisible())
                all += cutTextsOf(window);
        }
        return all;
    });
    for (const QString& text : cut) {
        if (!m_cutTexts.contains(text))
            m_cutTexts.append(text);
    }
}
