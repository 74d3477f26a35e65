#include "view/qt/graph_window.h"

#include "ostrand/image/image_file.h"

#include <QActionGroup>
#include <QAreaSeries>
#include <QCategoryAxis>
#include <QChart>
#include <QChartView>
#include <QCloseEvent>
#include <QFileDialog>
#include <QLineSeries>
#include <QPainter>
#include <QPrintDialog>
#include <QPrinter>
#include <QToolBar>
#include <QVBoxLayout>
#include <QValueAxis>

#include <algorithm>
#include <cmath>
#include <cstring>
#include <set>

namespace quirnel {

namespace {

QColor Color(std::uint32_t rgb)
{
    return QColor((rgb >> 16) & 0xFF, (rgb >> 8) & 0xFF, rgb & 0xFF);
}

/// About eight ticks over the buckets' range, at whole bucket numbers.
std::vector<std::int64_t> Ticks(std::int64_t first, std::int64_t last)
{
    std::vector<std::int64_t> ticks;
    const std::int64_t span = std::max<std::int64_t>(last - first, 1);
    const std::int64_t step = std::max<std::int64_t>((span + 7) / 8, 1);
    for (std::int64_t tick = first; tick <= last; tick += step)
        ticks.push_back(tick);
    return ticks;
}

} // namespace

GraphWindow::GraphWindow(GraphChart chart, std::filesystem::path settingsFile,
                         ost::UserInterface& ui, ost::Clipboard& clipboard, QWidget* parent,
                         bool hosted)
    : QWidget(parent, hosted ? Qt::Widget : Qt::Window), m_chart(std::move(chart)),
      m_settingsFile(std::move(settingsFile)), m_ui(ui), m_clipboard(clipboard), m_hosted(hosted),
      m_settings(LoadGraphWindowSettings(m_settingsFile))
{
    setWindowTitle(QString::fromStdString(m_chart.title));
    setObjectName(QStringLiteral("GraphWindow"));
    auto* layout = new QVBoxLayout(this);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->setSpacing(0);

    auto* tools = new QToolBar(this);
    tools->setToolButtonStyle(Qt::ToolButtonTextOnly);
    QAction* capture = tools->addAction(QString::fromUtf8(kCaptureGraphImageLabel));
    capture->setObjectName(QStringLiteral("CaptureGraphImage"));
    capture->setToolTip(QString::fromUtf8(kCaptureGraphImageTip));
    connect(capture, &QAction::triggered, this, [this] { CaptureImage(); });
    tools->addSeparator();
    m_horizontal = tools->addAction(QStringLiteral("Draw horizontal lines"));
    m_vertical = tools->addAction(QStringLiteral("Draw vertical lines"));
    for (QAction* lines : {m_horizontal, m_vertical})
        lines->setCheckable(true);
    m_horizontal->setChecked(m_settings.horizontalLines);
    m_vertical->setChecked(m_settings.verticalLines);
    connect(m_horizontal, &QAction::toggled, this, &GraphWindow::SetHorizontalLines);
    connect(m_vertical, &QAction::toggled, this, &GraphWindow::SetVerticalLines);
    tools->addSeparator();
    auto* styles = new QActionGroup(this);
    m_line = tools->addAction(QStringLiteral("Line"));
    m_ribbon = tools->addAction(QStringLiteral("Ribbon"));
    for (QAction* style : {m_line, m_ribbon}) {
        style->setCheckable(true);
        styles->addAction(style);
    }
    (m_settings.style == kGraphStyleRibbon ? m_ribbon : m_line)->setChecked(true);
    connect(m_line, &QAction::triggered, this, [this] { SetStyle(kGraphStyleLine); });
    connect(m_ribbon, &QAction::triggered, this, [this] { SetStyle(kGraphStyleRibbon); });
    layout->addWidget(tools);

    m_view = new QChartView(new QChart, this);
    m_view->setRenderHint(QPainter::Antialiasing);
    layout->addWidget(m_view, 1);
    Draw();

    if (m_hosted) {
        resize(kHostedGraphWidth, kHostedGraphHeight);
    } else if (m_settings.hasPosition) {
        setGeometry(m_settings.left, m_settings.top, m_settings.width, m_settings.height);
    } else {
        resize(kHostedGraphWidth + 200, kHostedGraphHeight + 100);
    }
}

GraphWindow::~GraphWindow()
{
    // Closing the main window destroys this one without a close event.
    SaveGraphWindowSettings(m_settings, m_settingsFile);
}

QChart* GraphWindow::Chart() const
{
    return m_view->chart();
}

void GraphWindow::Draw()
{
    QChart* chart = m_view->chart();
    chart->removeAllSeries();
    for (QAbstractAxis* axis : chart->axes()) {
        chart->removeAxis(axis);
        delete axis;
    }
    chart->setTitle(QString::fromStdString(m_chart.title));
    chart->legend()->setAlignment(Qt::AlignBottom);

    std::int64_t first = 0;
    std::int64_t last = 0;
    double low = 0.0;
    double high = 0.0;
    bool any = false;
    std::vector<QAbstractSeries*> drawn;
    for (const GraphSeries& series : m_chart.series) {
        auto* line = new QLineSeries;
        for (const auto& [bucket, total] : series.data.Points()) {
            line->append(static_cast<double>(bucket), total);
            first = any ? std::min(first, bucket) : bucket;
            last = any ? std::max(last, bucket) : bucket;
            low = std::min(low, total);
            high = std::max(high, total);
            any = true;
        }
        const QColor color = Color(series.color);
        QAbstractSeries* shown = line;
        if (m_settings.style == kGraphStyleRibbon) {
            // A ribbon fills down to zero, half transparent so that a second set shows through.
            auto* area = new QAreaSeries(line);
            line->setParent(area);
            QColor fill = color;
            fill.setAlpha(110);
            area->setBrush(fill);
            area->setPen(QPen(color, 2));
            shown = area;
        } else {
            line->setPen(QPen(color, 2));
        }
        shown->setName(QString::fromStdString(series.name));
        chart->addSeries(shown);
        drawn.push_back(shown);
    }

    auto* x = new QCategoryAxis;
    x->setLabelsPosition(QCategoryAxis::AxisLabelsPositionOnValue);
    x->setTitleText(QString::fromStdString(m_chart.xLabel));
    std::set<QString> used;
    for (std::int64_t tick : Ticks(first, last)) {
        const QString label = QString::fromStdString(
            DivisionTickLabel(m_chart.division, m_chart.referenceDate, tick));
        // The axis needs distinct labels; a repeated one (same day in two years) is left out.
        if (used.insert(label).second)
            x->append(label, static_cast<double>(tick));
    }
    x->setRange(static_cast<double>(first), static_cast<double>(std::max(last, first + 1)));
    x->setGridLineVisible(m_settings.verticalLines);

    auto* y = new QValueAxis;
    y->setTitleText(QString::fromStdString(m_chart.yLabel));
    y->setRange(low, high > low ? high * 1.05 : low + 1.0);
    y->applyNiceNumbers();
    y->setGridLineVisible(m_settings.horizontalLines);

    chart->addAxis(x, Qt::AlignBottom);
    chart->addAxis(y, Qt::AlignLeft);
    for (QAbstractSeries* series : drawn) {
        series->attachAxis(x);
        series->attachAxis(y);
    }
}

void GraphWindow::SetStyle(int style)
{
    if (style == m_settings.style)
        return;
    m_settings.style = style == kGraphStyleRibbon ? kGraphStyleRibbon : kGraphStyleLine;
    (m_settings.style == kGraphStyleRibbon ? m_ribbon : m_line)->setChecked(true);
    Draw();
    SaveSettings();
}

void GraphWindow::SetHorizontalLines(bool on)
{
    m_settings.horizontalLines = on;
    m_horizontal->setChecked(on);
    Draw();
    SaveSettings();
}

void GraphWindow::SetVerticalLines(bool on)
{
    m_settings.verticalLines = on;
    m_vertical->setChecked(on);
    Draw();
    SaveSettings();
}

void GraphWindow::RememberPlacement()
{
    if (m_hosted || !isVisible())
        return;
    const QRect frame = geometry();
    m_settings.hasPosition = true;
    m_settings.left = frame.left();
    m_settings.top = frame.top();
    m_settings.width = frame.width();
    m_settings.height = frame.height();
}

void GraphWindow::SaveSettings()
{
    RememberPlacement();
    // A settings file that cannot be written only loses the choices for the next time.
    SaveGraphWindowSettings(m_settings, m_settingsFile);
}

void GraphWindow::closeEvent(QCloseEvent* event)
{
    SaveSettings();
    QWidget::closeEvent(event);
}

void GraphWindow::moveEvent(QMoveEvent* event)
{
    RememberPlacement();
    QWidget::moveEvent(event);
}

void GraphWindow::resizeEvent(QResizeEvent* event)
{
    RememberPlacement();
    QWidget::resizeEvent(event);
}

CaptureResult GraphWindow::CaptureImage()
{
    return CaptureGraphImage(m_ui, m_clipboard, *this);
}

ost::RgbaImage GraphWindow::Grab()
{
    const QImage grabbed = m_view->grab().toImage().convertToFormat(QImage::Format_RGBA8888);
    ost::RgbaImage image;
    image.width = grabbed.width();
    image.height = grabbed.height();
    image.pixels.resize(static_cast<std::size_t>(image.width) * image.height * 4);
    for (int row = 0; row < image.height; ++row)
        std::memcpy(image.pixels.data() + static_cast<std::size_t>(row) * image.width * 4,
                    grabbed.constScanLine(row), static_cast<std::size_t>(image.width) * 4);
    return image;
}

std::optional<std::string> GraphWindow::AskImagePath()
{
    const QString chosen = QFileDialog::getSaveFileName(
        this, QString::fromUtf8(kCaptureGraphImageLabel), QStringLiteral("graph.png"),
        QStringLiteral("PNG Image (*.png);;BMP Image (*.bmp);;JPEG Image (*.jpg *.jpeg);;"
                       "TIFF Image (*.tif *.tiff)"));
    if (chosen.isEmpty())
        return std::nullopt;
    return chosen.toStdString();
}

bool GraphWindow::PrintImage(const ost::RgbaImage& image)
{
    QPrinter printer;
    QPrintDialog dialog(&printer, this);
    if (dialog.exec() != QDialog::Accepted)
        return false;
    const QImage picture(image.pixels.data(), image.width, image.height, image.width * 4,
                         QImage::Format_RGBA8888);
    QPainter painter;
    if (!painter.begin(&printer))
        return false;
    const QRect page = painter.viewport();
    const QSize size = picture.size().scaled(page.size(), Qt::KeepAspectRatio);
    painter.drawImage(QRect(page.topLeft(), size), picture);
    painter.end();
    return true;
}

} // namespace quirnel
