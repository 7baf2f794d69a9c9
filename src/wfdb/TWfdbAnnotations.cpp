#include "wfdb/TWfdbAnnotations.h"

#include "base/Error.h"
#include "wfdb/WfdbCodes.h"

#include <QFile>
#include <QFileInfo>

#include <cmath>

namespace {

constexpr qint64 maxFileBytes = 8 * 1024 * 1024;
constexpr double maxFrequency = 100000.0;

/// Words that are no annotations: the code in their upper six bits says what they carry for the annotation
/// before them.
enum TWord
{
    Skip = 59, ///< a long interval to the next annotation follows in four bytes
    Num = 60,  ///< `num` of this annotation and of those to come
    Subtype = 61,
    Channel = 62, ///< `channel` of this annotation and of those to come
    Aux = 63      ///< so many bytes of text follow, filled up to an even number
};

[[noreturn]] void fail()
{
    throw TError("Cannot read WFDB annotations");
}

QByteArray readFile(const QString& path)
{
    // A pipe would keep us waiting.
    QFile file(path);
    if (!QFileInfo(path).isFile() || !file.open(QIODevice::ReadOnly) || file.size() > maxFileBytes)
        fail();
    return file.readAll();
}

class TParser
{
public:
    explicit TParser(const QByteArray& bytes) : m_bytes(bytes) {}

    std::vector<TWfdbAnnotation> parse()
    {
        for (int word = takeWord(); word != 0; word = takeWord())
            takeField(word >> valueBits, word & valueMask);
        return std::move(m_list);
    }

private:
    static constexpr int valueBits = 10;
    static constexpr int valueMask = (1 << valueBits) - 1;

    int takeByte()
    {
        if (m_at == m_bytes.size())
            fail();
        return static_cast<unsigned char>(m_bytes.at(m_at++));
    }

    int takeWord()
    {
        const int low = takeByte();
        return low | takeByte() << 8;
    }

    void takeField(int code, int value)
    {
        switch (code) {
        case Skip:
            skip();
            break;
        case Num:
            last().num = m_num = signedByte(value);
            break;
        case Subtype:
            last().subtype = signedByte(value);
            break;
        case Channel:
            last().channel = m_channel = value & 0xff;
            break;
        case Aux:
            last().aux = takeText(value);
            break;
        default:
            addAnnotation(code, value);
        }
    }

    static int signedByte(int value) { return ((value & 0xff) ^ 0x80) - 0x80; }

    /// The upper half comes first.
    void skip()
    {
        const int high = takeWord();
        m_sample += static_cast<qint32>(static_cast<quint32>(high) << 16 | static_cast<quint32>(takeWord()));
    }

    void addAnnotation(int code, int interval)
    {
        m_sample += interval;
        TWfdbAnnotation annotation;
        annotation.sample = m_sample;
        annotation.code = code;
        annotation.num = m_num;
        annotation.channel = m_channel;
        m_list.push_back(annotation);
    }

    TWfdbAnnotation& last()
    {
        if (m_list.empty())
            fail();
        return m_list.back();
    }

    QByteArray takeText(int size)
    {
        const int padded = size + size % 2;
        if (m_bytes.size() - m_at < padded)
            fail();
        QByteArray text = m_bytes.mid(m_at, size);
        m_at += padded;
        while (text.endsWith('\0'))
            text.chop(1);
        return text;
    }

    const QByteArray& m_bytes;
    int m_at = 0;
    qint64 m_sample = 0;
    int m_num = 0;
    int m_channel = 0;
    std::vector<TWfdbAnnotation> m_list;
};

/// A note at the very beginning may tell the frequency of the file; 0 for any other annotation.
double frequencyIn(const TWfdbAnnotation& annotation)
{
    const QByteArray key = "## time resolution:";
    if (wfdb::mnemonicOf(annotation.code) != "\"" || !annotation.aux.startsWith(key))
        return 0.0;
    const double frequency = annotation.aux.mid(key.size()).trimmed().toDouble();
    return std::isfinite(frequency) && frequency > 0.0 && frequency <= maxFrequency ? frequency : 0.0;
}

} // namespace

TWfdbAnnotations TWfdbAnnotations::read(const QString& path)
{
    const QByteArray bytes = readFile(path);
    TWfdbAnnotations annotations;
    annotations.m_list = TParser(bytes).parse();
    if (!annotations.m_list.empty())
        annotations.m_frequency = frequencyIn(annotations.m_list.front());
    if (annotations.m_frequency > 0.0)
        annotations.m_list.erase(annotations.m_list.begin());
    return annotations;
}
