#include "app/qt/command_icons.h"

#include <QFont>
#include <QPainter>
#include <QPainterPath>
#include <QPixmap>

#include <array>

namespace quirnel {
namespace {

enum class Area
{
    File,
    Column,
    Row,
    Table,
    Tools,
    Window,
};

struct IconDesign
{
    std::string_view name;
    Area area;
    const char* glyph;
};

// Column tiles carry a vertical bar and row tiles a horizontal one, so that "copy column"
// and "copy row" differ by more than colour.
constexpr std::array kDesigns = {
    IconDesign{"file-new", Area::File, "+"},
    IconDesign{"file-open", Area::File, "\u21e7"},
    IconDesign{"file-open-nonstandard", Area::File, "?"},
    IconDesign{"file-save", Area::File, "\u21e9"},
    IconDesign{"file-save-as", Area::File, "\u21e9+"},
    IconDesign{"file-close", Area::File, "\u00d7"},
    IconDesign{"file-properties", Area::File, "i"},
    IconDesign{"folder-explore", Area::File, "\u2026"},
    IconDesign{"export-html", Area::File, "<>"},
    IconDesign{"print", Area::File, "P"},
    IconDesign{"exit", Area::File, "\u23fb"},
    IconDesign{"multiline-edit", Area::Window, "\u00b6"},
    IconDesign{"warnings", Area::Window, "!"},
    IconDesign{"preferences", Area::Window, "\u2699"},
    IconDesign{"toolbar", Area::Window, "\u2261"},
    IconDesign{"toolbar-customize", Area::Window, "\u270e"},
    IconDesign{"column-combine", Area::Column, "\u2295"},
    IconDesign{"column-copy", Area::Column, "C"},
    IconDesign{"column-create", Area::Column, "+"},
    IconDesign{"column-cut", Area::Column, "\u2702"},
    IconDesign{"column-delete", Area::Column, "\u00d7"},
    IconDesign{"column-insert-after", Area::Column, "+\u2192"},
    IconDesign{"column-insert-before", Area::Column, "\u2190+"},
    IconDesign{"column-move-left", Area::Column, "\u2190"},
    IconDesign{"column-move-right", Area::Column, "\u2192"},
    IconDesign{"column-paste", Area::Column, "V"},
    IconDesign{"column-rename", Area::Column, "A"},
    IconDesign{"column-search", Area::Column, "?"},
    IconDesign{"column-search-continue", Area::Column, "?\u00bb"},
    IconDesign{"column-set", Area::Column, "="},
    IconDesign{"column-trim", Area::Column, "\u21e5"},
    IconDesign{"row-copy", Area::Row, "C"},
    IconDesign{"row-create", Area::Row, "+"},
    IconDesign{"row-cut", Area::Row, "\u2702"},
    IconDesign{"row-delete", Area::Row, "\u00d7"},
    IconDesign{"row-duplicate", Area::Row, "2"},
    IconDesign{"row-insert-before", Area::Row, "\u2191+"},
    IconDesign{"row-insert-after", Area::Row, "\u2193+"},
    IconDesign{"row-move-up", Area::Row, "\u2191"},
    IconDesign{"row-move-down", Area::Row, "\u2193"},
    IconDesign{"row-paste", Area::Row, "V"},
    IconDesign{"row-shift-cells", Area::Row, "\u21c4"},
    IconDesign{"row-jump", Area::Table, "#"},
    IconDesign{"bookmark-return", Area::Table, "\u2605"},
    IconDesign{"bookmark-set", Area::Table, "\u2606"},
    IconDesign{"rows-deselect-all", Area::Table, "\u25a1"},
    IconDesign{"rows-select-all", Area::Table, "\u25a0"},
    IconDesign{"columns-maximize", Area::Table, "\u2194"},
    IconDesign{"columns-minimize", Area::Table, "\u2192\u2190"},
    IconDesign{"table-statistics", Area::Table, "\u03a3"},
    IconDesign{"rows-deduplicate", Area::Tools, "1"},
    IconDesign{"find", Area::Tools, "?"},
    IconDesign{"find-replace", Area::Tools, "?="},
    IconDesign{"find-next", Area::Tools, "?\u2193"},
    IconDesign{"find-previous", Area::Tools, "?\u2191"},
    IconDesign{"graph", Area::Tools, "\u223f"},
    IconDesign{"import-csv", Area::Tools, "\u21a7"},
    IconDesign{"rows-shuffle", Area::Tools, "\u2248"},
    IconDesign{"spell-check", Area::Tools, "\u2713"},
    IconDesign{"trim", Area::Tools, "\u21e5"},
};

QColor AreaColour(Area area)
{
    switch (area) {
    case Area::File:
        return QColor(0x2f, 0x6d, 0xb5);
    case Area::Column:
        return QColor(0x2e, 0x8b, 0x57);
    case Area::Row:
        return QColor(0xd0, 0x74, 0x1c);
    case Area::Table:
        return QColor(0x7b, 0x4f, 0xa0);
    case Area::Tools:
        return QColor(0x1f, 0x84, 0x8a);
    case Area::Window:
        return QColor(0x5a, 0x64, 0x70);
    }
    return Qt::gray;
}

QPixmap Paint(const IconDesign& design, int size)
{
    QPixmap pixmap(size, size);
    pixmap.fill(Qt::transparent);
    QPainter painter(&pixmap);
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setRenderHint(QPainter::TextAntialiasing);
    const QColor colour = AreaColour(design.area);
    const QRectF tile(0.5, 0.5, size - 1.0, size - 1.0);
    const qreal radius = size / 5.0;
    painter.setPen(QPen(colour.darker(140), 1));
    painter.setBrush(colour);
    painter.drawRoundedRect(tile, radius, radius);

    const qreal bar = size / 8.0;
    painter.setPen(Qt::NoPen);
    painter.setBrush(QColor(255, 255, 255, 150));
    if (design.area == Area::Column) {
        painter.drawRect(QRectF(size * 0.14, size * 0.14, bar, size * 0.72));
    } else if (design.area == Area::Row) {
        painter.drawRect(QRectF(size * 0.14, size * 0.14, size * 0.72, bar));
    }

    const QString glyph = QString::fromUtf8(design.glyph);
    QFont font(QStringLiteral("DejaVu Sans"));
    font.setBold(true);
    font.setPixelSize(glyph.size() > 1 ? size * 9 / 20 : size * 13 / 20);
    painter.setFont(font);
    painter.setPen(Qt::white);
    QRectF textArea = tile;
    if (design.area == Area::Column) {
        textArea.setLeft(size * 0.22);
    } else if (design.area == Area::Row) {
        textArea.setTop(size * 0.22);
    }
    painter.drawText(textArea, Qt::AlignCenter, glyph);
    return pixmap;
}

} // namespace

QIcon CommandIcon(std::string_view name)
{
    // Not cached: a static cache would outlive the application object that pixmaps need.
    for (const IconDesign& design : kDesigns) {
        if (design.name == name) {
            QIcon icon;
            for (int size : {16, 24, 32, 48}) {
                icon.addPixmap(Paint(design, size));
            }
            return icon;
        }
    }
    return {};
}

} // namespace quirnel
