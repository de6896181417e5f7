#include "SlideFixtures.h"

#include <QFile>
#include <QPainter>
#include <QPdfWriter>

#include <algorithm>

using namespace Qt::StringLiterals;

namespace SlideFixtures {

void writePdf(const QString &path, const QStringList &pages)
{
    QPdfWriter writer(path);
    writer.setPageSize(QPageSize(QSizeF(254, 190.5), QPageSize::Millimeter));
    writer.setPageMargins({});
    writer.setResolution(72);
    QPainter painter(&writer);
    // CJK comes by fallback: Qt writes the digits of Noto Sans CJK without a text mapping.
    QFont font(u"DejaVu Sans"_s);
    font.setPixelSize(40);
    painter.setFont(font);
    for (qsizetype i = 0; i < pages.size(); ++i) {
        if (i > 0)
            writer.newPage();
        const QRect page = painter.viewport();
        painter.fillRect(page.adjusted(0, 0, 0, -page.height() + 70), QColor(0x2f, 0x6f, 0xd8));
        if (pages[i].isEmpty())
            painter.fillRect(page.adjusted(120, 160, -120, -80), QColor(0xf0, 0xa0, 0x30));
        else
            painter.drawText(page.adjusted(50, 120, -50, -50), Qt::TextWordWrap, pages[i]);
    }
}

void writeNumberedPdf(const QString &path, int pageCount)
{
    QStringList pages;
    for (int n = 1; n <= pageCount; ++n)
        pages.append(u"Page %1: topic %1"_s.arg(n));
    writePdf(path, pages);
}

void writeEncryptedPdf(const QString &path)
{
    // The standard security handler with owner and user keys that no empty password matches.
    const QList<QByteArray> objects{
        "<< /Type /Catalog /Pages 2 0 R >>",
        "<< /Type /Pages /Kids [3 0 R] /Count 1 >>",
        "<< /Type /Page /Parent 2 0 R /MediaBox [0 0 200 200] >>",
        "<< /Filter /Standard /V 1 /R 2 /P -4 /O <" + QByteArray(64, '7') + "> /U <" + QByteArray(64, 'a') + "> >>",
    };
    QByteArray pdf = "%PDF-1.4\n";
    QList<qsizetype> offsets;
    for (qsizetype i = 0; i < objects.size(); ++i) {
        offsets.append(pdf.size());
        pdf += QByteArray::number(i + 1) + " 0 obj\n" + objects[i] + "\nendobj\n";
    }
    const qsizetype xref = pdf.size();
    pdf += "xref\n0 " + QByteArray::number(objects.size() + 1) + "\n0000000000 65535 f \n";
    for (const qsizetype offset : offsets)
        pdf += QByteArray::number(offset).rightJustified(10, '0') + " 00000 n \n";
    pdf += "trailer\n<< /Size " + QByteArray::number(objects.size() + 1)
        + " /Root 1 0 R /Encrypt 4 0 R /ID [<00112233445566778899aabbccddeeff> <00112233445566778899aabbccddeeff>] >>\n"
          "startxref\n" + QByteArray::number(xref) + "\n%%EOF\n";
    QFile file(path);
    file.open(QIODevice::WriteOnly);
    file.write(pdf);
}

void writePresentation(const QString &path, const QStringList &slides)
{
    QString pages;
    for (const QString &slide : slides)
        pages += uR"(<draw:page><draw:frame svg:width="20cm" svg:height="4cm" svg:x="2cm" svg:y="2cm"><draw:text-box>
<text:p>%1</text:p></draw:text-box></draw:frame></draw:page>)"_s.arg(slide.toHtmlEscaped());
    QFile file(path);
    file.open(QIODevice::WriteOnly);
    file.write(uR"(<?xml version="1.0" encoding="UTF-8"?>
<office:document xmlns:office="urn:oasis:names:tc:opendocument:xmlns:office:1.0"
 xmlns:draw="urn:oasis:names:tc:opendocument:xmlns:drawing:1.0" xmlns:text="urn:oasis:names:tc:opendocument:xmlns:text:1.0"
 xmlns:svg="urn:oasis:names:tc:opendocument:xmlns:svg-compatible:1.0" office:version="1.3"
 office:mimetype="application/vnd.oasis.opendocument.presentation">
<office:body><office:presentation>%1</office:presentation></office:body></office:document>
)"_s.arg(pages).toUtf8());
}

} // namespace SlideFixtures

Text::Schedule ManualTimers::schedule()
{
    return [this](std::chrono::milliseconds delay, std::function<void()> task) {
        timers_.push_back({clock_.elapsed() + delay, std::move(task)});
    };
}

void ManualTimers::advance(std::chrono::milliseconds duration)
{
    const ManualClock::Duration end = clock_.elapsed() + duration;
    for (;;) {
        const auto next = std::min_element(timers_.begin(), timers_.end(),
                                           [](const Timer &a, const Timer &b) { return a.due < b.due; });
        if (next == timers_.end() || next->due > end)
            break;
        clock_.advance(next->due - clock_.elapsed());
        const std::function<void()> task = std::move(next->task);
        timers_.erase(next);
        task();
    }
    clock_.advance(end - clock_.elapsed());
}
