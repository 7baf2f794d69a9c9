#pragma once

#include "base/Constants.h"
#include "dialogs/StudyDialog.h"
#include "study/LocalStudyDatabase.h"
#include "study/Study.h"

#include <QComboBox>
#include <QCoreApplication>
#include <QDialogButtonBox>
#include <QLineEdit>
#include <QListWidget>
#include <QPlainTextEdit>
#include <QPushButton>
#include <QSettings>
#include <QTemporaryDir>
#include <QtTest>

/// A store of the process as long as it lives, however the test ends.
class TCurrentStore
{
public:
    explicit TCurrentStore(StudyDatabase* database) { setStudyDatabase(database); }
    ~TCurrentStore() { setStudyDatabase(nullptr); }
    TCurrentStore(const TCurrentStore&) = delete;
    TCurrentStore& operator=(const TCurrentStore&) = delete;
};

/// Preferences and a data folder of their own, gone with it.
class TDialogStore
{
public:
    TDialogStore()
    {
        QSettings::setPath(QSettings::NativeFormat, QSettings::UserScope, m_folder.path());
        QCoreApplication::setOrganizationName(QLatin1String(velantor::organizationName));
        QCoreApplication::setApplicationName(QLatin1String(velantor::applicationName));
        QSettings().clear();
        m_database = std::make_unique<LocalStudyDatabase>(folder());
        m_current = std::make_unique<TCurrentStore>(m_database.get());
    }
    TDialogStore(const TDialogStore&) = delete;
    TDialogStore& operator=(const TDialogStore&) = delete;

    LocalStudyDatabase& database() { return *m_database; }
    /// Where the files of its studies lie.
    QString folder() const { return m_folder.filePath(QStringLiteral("store")); }

    /// A closed study of this record; its id.
    qint32 addStudy(StudyInfo info)
    {
        Study* study = m_database->createStudy(info);
        m_database->studyFromInfo(*study, info);
        m_database->saveStudy(study);
        m_database->closeStudy(study);
        return info.id;
    }

private:
    QTemporaryDir m_folder;
    std::unique_ptr<LocalStudyDatabase> m_database;
    std::unique_ptr<TCurrentStore> m_current;
};

inline StudyInfo infoOfType(const char* type)
{
    StudyInfo info;
    info.studyType = type;
    return info;
}

template <typename Widget> Widget* widgetOf(const StudyDialog& dialog, const char* name)
{
    return dialog.findChild<Widget*>(QString::fromUtf8(name));
}

inline QLineEdit* lineOf(const StudyDialog& dialog, const char* name)
{
    return widgetOf<QLineEdit>(dialog, name);
}

inline QComboBox* comboOf(const StudyDialog& dialog, const char* name)
{
    return widgetOf<QComboBox>(dialog, name);
}

inline QPushButton* okButton(const StudyDialog& dialog)
{
    return widgetOf<QDialogButtonBox>(dialog, "buttonBox")->button(QDialogButtonBox::Ok);
}

/// Replaces the text of a field key by key, as a user does. ASCII alone, for these are the keys there are.
inline void type(QLineEdit* field, const char* text)
{
    field->selectAll();
    QTest::keyClick(field, Qt::Key_Delete);
    QTest::keyClicks(field, QString::fromLatin1(text));
}

inline QStringList itemsOf(const QComboBox* combo)
{
    QStringList items;
    for (int index = 0; index < combo->count(); ++index)
        items += combo->itemText(index);
    return items;
}
