#pragma once
// The graph window over Qt Charts: the data sets as lines or ribbons, X-axis ticks written per
// division, optional grid lines, and "Capture Graph Image". Its options and position are kept
// in "graph.xml".

#include "view/graph_capture.h"
#include "view/graph_data_set.h"
#include "view/graph_window_settings.h"

#include <QWidget>

#include <filesystem>

class QAction;

namespace ost {
class Clipboard;
class UserInterface;
} // namespace ost

QT_BEGIN_NAMESPACE
class QChart;
class QChartView;
QT_END_NAMESPACE

namespace quirnel {

/// The size of a graph placed in a host window.
inline constexpr int kHostedGraphWidth = 590;
inline constexpr int kHostedGraphHeight = 440;

class GraphWindow : public QWidget, private GraphCaptureHost
{
    Q_OBJECT

public:
    /// With `hosted` the graph is a 590 by 440 child of `parent`; otherwise a window of its
    /// own (owned by `parent`, if any) placed where the last one was.
    GraphWindow(GraphChart chart, std::filesystem::path settingsFile, ost::UserInterface& ui,
                ost::Clipboard& clipboard, QWidget* parent = nullptr, bool hosted = false);
    ~GraphWindow() override;

    const GraphWindowSettings& Settings() const { return m_settings; }
    void SetStyle(int style);
    void SetHorizontalLines(bool on);
    void SetVerticalLines(bool on);
    /// "Capture Graph Image".
    CaptureResult CaptureImage();
    QChart* Chart() const;
    QChartView* ChartView() const { return m_view; }

protected:
    void closeEvent(QCloseEvent* event) override;
    void moveEvent(QMoveEvent* event) override;
    void resizeEvent(QResizeEvent* event) override;

private:
    ost::RgbaImage Grab() override;
    std::optional<std::string> AskImagePath() override;
    bool PrintImage(const ost::RgbaImage& image) override;

    /// Builds the chart's series and axes from the data and the settings.
    void Draw();
    void SaveSettings();
    /// Notes where a window of its own stands, for "WindowPosition".
    void RememberPlacement();

    GraphChart m_chart;
    std::filesystem::path m_settingsFile;
    ost::UserInterface& m_ui;
    ost::Clipboard& m_clipboard;
    bool m_hosted;
    GraphWindowSettings m_settings;
    QChartView* m_view = nullptr;
    QAction* m_horizontal = nullptr;
    QAction* m_vertical = nullptr;
    QAction* m_line = nullptr;
    QAction* m_ribbon = nullptr;
};

} // namespace quirnel
