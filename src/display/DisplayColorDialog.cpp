#include "display/DisplayColorDialog.h"

#include "display/ColorSchemes.h"
#include "display/ColorTags.h"
#include "ui_DisplayColorDialog.h"

#include <QColorDialog>
#include <QPainter>
#include <QSignalBlocker>

namespace {

constexpr int rgbRole = Qt::UserRole;
constexpr int tagRole = Qt::UserRole + 1;
constexpr int alphaRole = Qt::UserRole + 2;
constexpr int swatchSize = 16;
constexpr int listMargin = 24;

QString elementName(int tag)
{
    switch (tag) {
    case TraceColor:
        return DisplayColorDialog::tr("Trace");
    case BackgroundColor:
        return DisplayColorDialog::tr("Background");
    case GridColor:
        return DisplayColorDialog::tr("Grid");
    case LabelColor:
        return DisplayColorDialog::tr("Labels and time ruler");
    case AverageBeatColor:
        return DisplayColorDialog::tr("Average beat");
    case ReferenceBeatColor:
        return DisplayColorDialog::tr("Reference beat");
    case SaturationColor:
        return DisplayColorDialog::tr("Saturated trace");
    case BeatTickColor:
        return DisplayColorDialog::tr("Beat ticks");
    case CursorColor:
        return DisplayColorDialog::tr("Sweep cursor");
    case FiducialColor:
        return DisplayColorDialog::tr("Fiducial marks");
    case SelectedBeatColor:
        return DisplayColorDialog::tr("Selected beat");
    default:
        return DisplayColorDialog::tr("Element %1").arg(tag);
    }
}

void showColor(QListWidgetItem* item, QRgb rgb)
{
    item->setData(rgbRole, static_cast<uint>(rgb));
    QPixmap swatch(swatchSize, swatchSize);
    // With an edge, or white could not be seen on the list.
    swatch.fill(Qt::gray);
    QPainter(&swatch).fillRect(swatch.rect().adjusted(1, 1, -1, -1), QColor(rgb));
    QIcon icon(swatch);
    // The selected row does not tint it.
    icon.addPixmap(swatch, QIcon::Selected);
    item->setIcon(icon);
}

QColor colorOf(const QListWidgetItem* item)
{
    QColor color(item->data(rgbRole).toUInt());
    color.setAlpha(item->data(alphaRole).toInt());
    return color;
}

} // namespace

DisplayColorDialog::DisplayColorDialog(QWidget* parent)
    : QDialog(parent), m_ui(std::make_unique<Ui::DisplayColorDialog>()), m_colorDialog(new QColorDialog(this))
{
    m_ui->setupUi(this);
    embedColorDialog();
    setColors(schemeColors(QStringLiteral("Light")));
}

DisplayColorDialog::~DisplayColorDialog() = default;

void DisplayColorDialog::setColors(const QMap<int, QColor>& colors)
{
    m_ui->listElements->clear();
    for (auto each = colors.begin(); each != colors.end(); ++each) {
        auto* item = new QListWidgetItem(elementName(each.key()), m_ui->listElements);
        item->setData(tagRole, each.key());
        item->setData(alphaRole, each.value().alpha());
        showColor(item, each.value().rgb());
    }
    // Names are never cut, whatever their language and font.
    m_ui->listElements->setMinimumWidth(m_ui->listElements->sizeHintForColumn(0) +
                                        2 * m_ui->listElements->frameWidth() + listMargin);
    m_ui->listElements->setCurrentRow(0);
}

QMap<int, QColor> DisplayColorDialog::colors() const
{
    QMap<int, QColor> colors;
    for (int row = 0; row < m_ui->listElements->count(); ++row) {
        const QListWidgetItem* item = m_ui->listElements->item(row);
        colors.insert(item->data(tagRole).toInt(), colorOf(item));
    }
    return colors;
}

void DisplayColorDialog::on_listElements_currentItemChanged(QListWidgetItem* current, QListWidgetItem*)
{
    if (!current)
        return;
    // To show another element is no change of its colour.
    const QSignalBlocker blocker(m_colorDialog);
    m_colorDialog->setCurrentColor(QColor(current->data(rgbRole).toUInt()));
}

void DisplayColorDialog::embedColorDialog()
{
    m_colorDialog->setWindowFlags(Qt::Widget);
    m_colorDialog->setOptions(QColorDialog::NoButtons | QColorDialog::DontUseNativeDialog);
    m_ui->colorLayout->addWidget(m_colorDialog);
    m_colorDialog->show();
    connect(m_colorDialog, &QColorDialog::currentColorChanged, this, &DisplayColorDialog::changeCurrent);
    // Escape in one of its fields would hide it alone.
    connect(m_colorDialog, &QDialog::rejected, this, [this] {
        m_colorDialog->show();
        reject();
    });
}

void DisplayColorDialog::changeCurrent(const QColor& color)
{
    QListWidgetItem* item = m_ui->listElements->currentItem();
    if (!item || colorOf(item).rgb() == color.rgb())
        return;
    showColor(item, color.rgb());
    Q_EMIT colorChanged(item->data(tagRole).toInt(), colorOf(item));
}
