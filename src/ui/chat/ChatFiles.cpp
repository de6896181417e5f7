#include "ui/chat/ChatFiles.h"

#include "ui/slides/SlideFiles.h"

ChatFiles::Outcome ChatFiles::attach(const QStringList &paths)
{
    Outcome outcome;
    for (const QString &path : paths) {
        if (SlideFiles::isSlides(path)) {
            outcome.slides = path;
            break;
        }
    }
    for (const QString &path : paths) {
        if (SlideFiles::isPresentation(path))
            continue;
        auto loaded = Attachment::load(path);
        if (auto *attachment = std::get_if<Attachment>(&loaded))
            attachments_.append(std::move(*attachment));
        else
            outcome.notes << std::get<AttachmentError>(loaded).message;
    }
    return outcome;
}

void ChatFiles::remove(qsizetype index)
{
    if (index >= 0 && index < attachments_.size())
        attachments_.removeAt(index);
}

std::optional<ChatFiles::Message> ChatFiles::take(const QString &typed)
{
    QString text = typed.trimmed();
    if (text.isEmpty() && attachments_.isEmpty())
        return std::nullopt;
    if (text.isEmpty())
        text = QStringLiteral("请看一下这些文件，用中文简单说说重点。");
    Message message{text, attachments_};
    attachments_.clear();
    return message;
}

QString ChatFiles::dialogFilter()
{
    return QStringLiteral("PDF、图片和文本 (*.pdf *.png *.jpg *.jpeg *.gif *.webp *.txt *.md *.srt *.vtt "
                          "*.json *.csv *.html)");
}

QString ChatFiles::label(const Attachment &attachment)
{
    return u"📎 " + attachment.name;
}
