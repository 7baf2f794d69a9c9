#pragma once

#include <QByteArray>

#include <string>

/// A serial line without hardware: the program opens `path()`, the test is what stands at the other end.
class TPseudoTerminal
{
public:
    /// Throws std::runtime_error if the system gives none.
    TPseudoTerminal();
    ~TPseudoTerminal() { hangUp(); }
    TPseudoTerminal(const TPseudoTerminal&) = delete;
    TPseudoTerminal& operator=(const TPseudoTerminal&) = delete;

    const std::string& path() const { return m_path; }
    /// Of the test's end.
    int descriptor() const { return m_master; }

    /// The line is cut; the path is gone.
    void hangUp();

    /// What fits at once; returns the bytes taken.
    int writeSome(const char* data, int size);
    bool writeAll(const QByteArray& bytes, int timeoutMs = 5000);

    /// What has come by now, at most `size` bytes.
    QByteArray readSome(int size);
    /// `size` bytes, fewer if they do not come in time.
    QByteArray readAll(int size, int timeoutMs = 5000);

private:
    void wait(short events);

    int m_master;
    std::string m_path;
};
