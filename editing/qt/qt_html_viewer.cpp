#include "editing/qt/qt_html_viewer.h"

#include <QCoreApplication>
#include <QEventLoop>
#include <QFile>
#include <QPrinter>
#include <QRegularExpression>
#include <QTextDocument>
#include <QTextFrame>
#include <QTextTable>
#include <QThread>
#include <QTimer>

#include <atomic>
#include <mutex>
#include <thread>

namespace quirnel {

namespace {

/// QTextDocument ignores <col> elements: their relative widths become the table's column
/// constraints, so that the printed columns keep the proportions of the screen.
void ApplyColumnWidths(const QString& html, QTextDocument& document)
{
    static const QRegularExpression col(QStringLiteral("<col width=\"(\\d+)\\*\">"));
    QList<double> widths;
    double total = 0;
    for (auto it = col.globalMatch(html); it.hasNext();) {
        widths.append(it.next().captured(1).toDouble());
        total += widths.back();
    }
    if (widths.isEmpty() || total <= 0)
        return;
    for (QTextFrame* frame : document.rootFrame()->childFrames()) {
        auto* table = qobject_cast<QTextTable*>(frame);
        if (!table || table->columns() != widths.size())
            continue;
        QList<QTextLength> constraints;
        for (double width : widths)
            constraints.append(QTextLength(QTextLength::PercentageLength, 100 * width / total));
        QTextTableFormat format = table->format();
        format.setColumnWidthConstraints(constraints);
        table->setFormat(format);
        return;
    }
}

} // namespace

struct QtHtmlViewer::Load
{
    std::mutex mutex;
    std::atomic<bool> done{false};
    bool abandoned = false;
    std::unique_ptr<QTextDocument> document;
    std::thread worker;
};

QtHtmlViewer::QtHtmlViewer() : m_load(std::make_shared<Load>()) {}

QtHtmlViewer::~QtHtmlViewer()
{
    if (!m_load->worker.joinable())
        return;
    {
        std::lock_guard lock(m_load->mutex);
        if (!m_load->done) {
            // A cancelled load: the worker cannot be interrupted, so it cleans up after itself.
            m_load->abandoned = true;
            m_load->worker.detach();
            return;
        }
    }
    m_load->worker.join();
}

bool QtHtmlViewer::Open(const std::string& path)
{
    QFile file(QString::fromStdString(path));
    if (m_load->worker.joinable() || !file.open(QIODevice::ReadOnly))
        return false;
    // The file is pure ASCII by construction.
    QString html = QString::fromLatin1(file.readAll());
    QThread* home = QThread::currentThread();
    std::shared_ptr<Load> load = m_load;
    load->worker = std::thread([load, html = std::move(html), home] {
        auto document = std::make_unique<QTextDocument>();
        document->setHtml(html);
        ApplyColumnWidths(html, *document);
        std::lock_guard lock(load->mutex);
        if (load->abandoned)
            return;
        document->moveToThread(home);
        load->document = std::move(document);
        load->done = true;
    });
    return true;
}

int QtHtmlViewer::ReadyState()
{
    return m_load->done ? kViewerComplete : 1;
}

void QtHtmlViewer::Wait(int milliseconds)
{
    QEventLoop loop;
    QTimer::singleShot(milliseconds, &loop, &QEventLoop::quit);
    loop.exec();
}

bool QtHtmlViewer::Print(const PrintJobRequest& job)
{
    if (!m_load->done)
        return false;
    m_load->worker.join();
    QPrinter printer(QPrinter::HighResolution);
    if (!job.outputFile.empty()) {
        printer.setOutputFormat(QPrinter::PdfFormat);
        printer.setOutputFileName(QString::fromStdString(job.outputFile));
    } else if (!job.printerName.empty()) {
        printer.setPrinterName(QString::fromStdString(job.printerName));
    }
    printer.setDocName(QString::fromStdString(job.title));
    printer.setCopyCount(std::max(1, job.copies));
    if (job.fromPage > 0 && job.toPage >= job.fromPage)
        printer.setFromTo(job.fromPage, job.toPage);
    printer.setPageOrientation(job.landscape ? QPageLayout::Landscape : QPageLayout::Portrait);
    if (!printer.isValid())
        return false;
    m_load->document->print(&printer);
    return printer.printerState() != QPrinter::Error;
}

} // namespace quirnel
