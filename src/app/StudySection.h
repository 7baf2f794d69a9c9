#pragma once

#include <QPropertyAnimation>

class QAbstractButton;
class QWidget;

/// One of the parts of the launcher that unfold: its body grows from nothing to the height of its contents,
/// and back. It starts collapsed, which is hidden, with a maximum height of 0.
class StudySection
{
public:
    /// `body` and `defaultAction` are borrowed. The default action is what a user who asks for the open
    /// section once more gets.
    StudySection(QWidget* body, QAbstractButton* defaultAction);

    bool isOpen() const { return m_isOpen; }
    void open();
    void close();
    /// Nothing if the action is not enabled.
    void triggerDefaultAction();

private:
    void animateTo(int height);
    void settle();

    QWidget* m_body;
    QAbstractButton* m_defaultAction;
    QPropertyAnimation m_animation;
    bool m_isOpen = false;
};
