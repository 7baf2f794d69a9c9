#include "simulators/heart/EcgPaper.h"

#include "simulators/heart/Course.h"
#include "simulators/heart/ExactMath.h"

#include <sstream>

namespace heart {
namespace {

// The unit of the picture is the way of the paper in one frame: 0.05 mm.
constexpr int unitsPerMm = 20;
constexpr double unitsPerCount = millivoltsPerCount * 10 * unitsPerMm;
constexpr int columnFrames = framesPerSecond * 5 / 2;
constexpr int columns = 4;
constexpr int left = 20 * unitsPerMm;
constexpr int pageWidth = left + columns * columnFrames + 10 * unitsPerMm;
constexpr int rowHeight = 35 * unitsPerMm;
constexpr int firstRow = 30 * unitsPerMm;
constexpr int pageHeight = firstRow + 4 * rowHeight;

constexpr TLead layout[3][columns] = {{I, aVR, V1, V4}, {II, aVL, V2, V5}, {III, aVF, V3, V6}};

const char header[] =
    R"svg(<style>text{font:64px sans-serif}path{fill:none;stroke-linejoin:round}.e{stroke:#000;stroke-width:5}</style>
<defs><pattern id="mm" width="20" height="20" patternUnits="userSpaceOnUse">
<path d="M20 0H0V20" stroke="#f6cdd2" stroke-width="2"/></pattern>
<pattern id="grid" width="100" height="100" patternUnits="userSpaceOnUse"><rect width="100" height="100" fill="url(#mm)"/>
<path d="M100 0H0V100" stroke="#e9929d" stroke-width="4"/></pattern></defs>
)svg";

struct TStrip
{
    TLead lead;
    int firstFrame;
    int frameCount;
    int x;
    int y; ///< of the mean
};

class TPaper
{
public:
    TPaper(const std::vector<TFrame>& frames, const std::vector<TPaperPage>& pages) : m_frames(frames)
    {
        const auto height = int(pages.size()) * pageHeight;
        m_svg << R"(<svg xmlns="http://www.w3.org/2000/svg" width=")" << pageWidth / unitsPerMm
              << R"(mm" height=")" << height / unitsPerMm << R"(mm" viewBox="0 0 )" << pageWidth << ' '
              << height << "\">\n"
              << header << R"(<rect width="100%" height="100%" fill="#fffafa"/>)"
              << R"svg(<rect width="100%" height="100%" fill="url(#grid)"/>)svg" << '\n';
        for (std::size_t page = 0; page < pages.size(); ++page)
            drawPage(pages[page], int(page) * pageHeight);
        m_svg << "</svg>\n";
    }

    std::string text() const { return m_svg.str(); }

private:
    void drawPage(const TPaperPage& page, int top)
    {
        const int first = nearestInteger(page.start * framesPerSecond);
        drawText(left, top + 5 * unitsPerMm, page.title + ", 25 mm/s, 10 mm/mV");
        for (int row = 0; row < 3; ++row) {
            const int y = top + firstRow + row * rowHeight;
            drawCalibration(y);
            for (int column = 0; column < columns; ++column) {
                const int offset = column * columnFrames;
                drawStrip({layout[row][column], first + offset, columnFrames, left + offset, y});
            }
        }
        const int y = top + firstRow + 3 * rowHeight;
        drawCalibration(y);
        drawStrip({II, first, columns * columnFrames, left, y});
    }

    void drawStrip(const TStrip& strip)
    {
        drawText(strip.x + unitsPerMm, strip.y - 16 * unitsPerMm, leadNames[strip.lead]);
        const double mean = meanOf(strip);
        int height = heightAt(strip, 0, mean);
        m_svg << R"(<path class="e" d="M)" << strip.x << ' ' << strip.y - height << 'l';
        int run = 0;
        for (int i = 1; i < strip.frameCount; ++i) {
            ++run;
            const int next = heightAt(strip, i, mean);
            if (next == height && i + 1 < strip.frameCount)
                continue;
            m_svg << run << (next > height ? "" : " ") << height - next << ' ';
            height = next;
            run = 0;
        }
        m_svg << "\"/>\n";
    }

    double meanOf(const TStrip& strip) const
    {
        double sum = 0;
        for (int i = 0; i < strip.frameCount; ++i)
            sum += m_frames[strip.firstFrame + i][strip.lead];
        return sum / strip.frameCount;
    }

    int heightAt(const TStrip& strip, int i, double mean) const
    {
        return nearestInteger((m_frames[strip.firstFrame + i][strip.lead] - mean) * unitsPerCount);
    }

    void drawCalibration(int y)
    {
        m_svg << R"(<path class="e" d="M)" << left - 10 * unitsPerMm << ' ' << y
              << "h50v-200h100v200h50\"/>\n";
    }

    void drawText(int x, int y, const std::string& text)
    {
        m_svg << "<text x=\"" << x << "\" y=\"" << y << "\">" << text << "</text>\n";
    }

    const std::vector<TFrame>& m_frames;
    std::ostringstream m_svg;
};

} // namespace

std::string ecgPaper(const std::vector<TFrame>& frames, const std::vector<TPaperPage>& pages)
{
    return TPaper(frames, pages).text();
}

} // namespace heart
