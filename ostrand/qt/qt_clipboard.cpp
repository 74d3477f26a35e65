#include "ostrand/qt/qt_clipboard.h"

#include <QClipboard>
#include <QGuiApplication>
#include <QMimeData>

namespace ost {
namespace {

QString FormatName(std::string_view format)
{
    return QString::fromUtf8(format.data(), static_cast<qsizetype>(format.size()));
}

QClipboard* SystemClipboard()
{
    return qobject_cast<QGuiApplication*>(QCoreApplication::instance())
               ? QGuiApplication::clipboard()
               : nullptr;
}

} // namespace

bool QtClipboard::Write(const std::vector<ClipboardItem>& items)
{
    QClipboard* clipboard = SystemClipboard();
    if (!clipboard)
        return false;
    auto* mime = new QMimeData;
    for (const ClipboardItem& item : items) {
        // Plain text goes through setText so that the platform offers it under its own
        // text formats (UTF-16 text on Windows, the UTF-8 targets on X11) too.
        if (item.format == kClipboardPlainText)
            mime->setText(
                QString::fromUtf8(item.data.data(), static_cast<qsizetype>(item.data.size())));
        else
            mime->setData(FormatName(item.format),
                          QByteArray(item.data.data(), static_cast<qsizetype>(item.data.size())));
    }
    clipboard->setMimeData(mime);
    return true;
}

std::optional<std::string> QtClipboard::Read(std::string_view format)
{
    QClipboard* clipboard = SystemClipboard();
    const QMimeData* mime = clipboard ? clipboard->mimeData() : nullptr;
    if (!mime)
        return std::nullopt;
    if (format == kClipboardPlainText) {
        if (!mime->hasText())
            return std::nullopt;
        return mime->text().toStdString();
    }
    const QString name = FormatName(format);
    if (!mime->hasFormat(name))
        return std::nullopt;
    return mime->data(name).toStdString();
}

} // namespace ost
