#pragma once

#include <QString>
#include <QtGlobal>

#include <mutex>
#include <string>
#include <vector>

/// Collects what goes to the debug log, from any thread, while it lives.
class TDebugTexts
{
public:
    TDebugTexts()
    {
        const std::lock_guard<std::mutex> lock(s_mutex);
        s_texts.clear();
        m_before = qInstallMessageHandler(add);
    }
    ~TDebugTexts() { qInstallMessageHandler(m_before); }
    TDebugTexts(const TDebugTexts&) = delete;
    TDebugTexts& operator=(const TDebugTexts&) = delete;

    static std::vector<std::string> texts()
    {
        const std::lock_guard<std::mutex> lock(s_mutex);
        return s_texts;
    }

private:
    static void add(QtMsgType, const QMessageLogContext&, const QString& text)
    {
        const std::lock_guard<std::mutex> lock(s_mutex);
        s_texts.push_back(text.toStdString());
    }

    inline static std::mutex s_mutex;
    inline static std::vector<std::string> s_texts;
    QtMessageHandler m_before;
};
