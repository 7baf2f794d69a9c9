#pragma once

#include <QFile>
#include <QThread>

#include <atomic>
#include <functional>
#include <memory>
#include <vector>

class TAcqBuffer;

/// How the frames of a replayed file lie in it, and which channels of them are wanted.
struct TDemoFileLayout
{
    int channels = 0;       ///< per frame, 0 to 16
    int samplingRate = 1;   ///< frames per second
    int bytesPerSample = 2; ///< frames of any other size are read and passed over
    int fileOffset = 0;     ///< bytes before the first frame
    int channelMask = -1;
};

/// Reads frames of 16-bit little-endian samples from a file, over and over, and pushes the selected channels
/// into a queue. Paces itself by what it has read: a burst of frames, then a sleep as long as they last.
class TDemoAcqThread : public QThread
{
public:
    using TSleep = std::function<void(int milliseconds)>;

    /// The file is open for reading; the buffer is borrowed.
    TDemoAcqThread(std::unique_ptr<QFile> file, const TDemoFileLayout& layout, TAcqBuffer& buffer);

    /// Both before the start.
    void setPaced(bool paced) { m_paced = paced; }
    void setSleep(TSleep sleep) { m_sleep = std::move(sleep); }

    /// Asks the thread to end and waits for that.
    void stopAndWait();

protected:
    void run() override;

private:
    /// The next frame, the first one behind the last; returns the bytes that came.
    int readFrame();
    int readBytes();
    /// False if nothing of the frame is wanted.
    bool pushSelected();
    void pace();
    void waitForRoom();

    const std::unique_ptr<QFile> m_file;
    const TDemoFileLayout m_layout;
    TAcqBuffer& m_buffer;
    const std::vector<int> m_selected;
    std::vector<char> m_frame;
    std::vector<char> m_selectedSamples;
    qint64 m_bytesRead = 0;
    double m_secondsPaced = 0.0;
    bool m_paced = true;
    TSleep m_sleep;
    /// Hands over what the thread has done to whoever waited for its end.
    std::atomic<bool> m_ended = false;
};
