// The slide window on real PDF files: what it shows after opening good and bad files, the hint
// and the switch with a scripted model, dropped files, and a presentation converted by
// LibreOffice when it is installed.

#include "ui/slides/SlidesWindow.h"

#include "EventLoop.h"
#include "FakeProvider.h"
#include "SlideFixtures.h"
#include "ui/slides/SlideConverter.h"
#include "ui/slides/SlidesDrop.h"

#include <QAbstractButton>
#include <QDropEvent>
#include <QFileDialog>
#include <QFile>
#include <QLabel>
#include <QMimeData>
#include <QPdfView>
#include <QSettings>
#include <QTemporaryDir>

#include <gtest/gtest.h>

using namespace Qt::StringLiterals;

namespace {

class SlidesWindowTest : public ::testing::Test
{
protected:
    void SetUp() override { QSettings().clear(); }

    QString path(const QString &name) const { return dir.filePath(name); }

    QString deck(const QString &name, int pages)
    {
        SlideFixtures::writeNumberedPdf(path(name), pages);
        return path(name);
    }

    static QString text(SlidesWindow &window, const char *name)
    {
        return window.findChild<QLabel *>(QString::fromLatin1(name))->text();
    }
    static QAbstractButton *button(SlidesWindow &window, const char *name)
    {
        return window.findChild<QAbstractButton *>(QString::fromLatin1(name));
    }
    static bool emptyShows(SlidesWindow &window, const QString &words)
    {
        const auto *empty = window.findChild<QLabel *>(u"empty"_s);
        return empty->isVisible() && empty->text() == words;
    }
    static bool hintShows(SlidesWindow &window, const QString &words)
    {
        return button(window, "hint")->isVisible() && button(window, "hint")->text() == words;
    }

    QTemporaryDir dir;
};

// Delivered straight to the widget: the application passes a drop only to the target of a drag
// that is really under way.
bool drop(QObject *target, const QList<QUrl> &urls)
{
    QMimeData data;
    data.setUrls(urls);
    QDropEvent event(QPointF(10, 10), Qt::CopyAction, &data, Qt::LeftButton, Qt::NoModifier);
    event.ignore();
    target->event(&event);
    return event.isAccepted();
}

} // namespace

TEST(SlidesWindowStatic, KnowsSlidesByExtension)
{
    for (const auto &[name, slides] : {std::pair{"a.pdf", true}, {"B.PPTX", true}, {"c.ppt", true},
                                       {"d.Key", true}, {"e.odp", true}, {"f.docx", false}, {"pdf", false}})
        EXPECT_EQ(SlidesWindow::isSlides(QString::fromLatin1(name)), slides) << name;
}

TEST_F(SlidesWindowTest, OpensAPdfAndTurnsItsPages)
{
    SlidesWindow window;
    EXPECT_EQ(window.windowTitle(), u"课件"_s);
    EXPECT_TRUE(text(window, "pageLabel").isEmpty());
    EXPECT_EQ(text(window, "empty"), u"把课件拖到这里\n支持 PDF；PPT / Keynote 会用 LibreOffice 自动转换"_s);

    window.open(deck(u"Lecture 3.pdf"_s, 3));
    EXPECT_TRUE(window.isVisible());
    EXPECT_EQ(window.windowTitle(), u"课件 · Lecture 3"_s);
    EXPECT_EQ(text(window, "pageLabel"), u"1 / 3"_s);
    EXPECT_FALSE(window.findChild<QLabel *>(u"empty"_s)->isVisible());
    EXPECT_EQ(window.findChild<QPdfView *>()->pageMode(), QPdfView::PageMode::SinglePage);

    const auto click = [&](const QString &description) {
        for (auto *b : window.findChildren<QAbstractButton *>())
            if (b->toolTip() == description)
                b->click();
    };
    const QStringList steps{u"下一页"_s, u"下一页"_s, u"下一页"_s, u"上一页"_s};
    const QStringList labels{u"2 / 3"_s, u"3 / 3"_s, u"3 / 3"_s, u"2 / 3"_s};
    for (qsizetype i = 0; i < steps.size(); ++i) {
        click(steps[i]);
        EXPECT_EQ(text(window, "pageLabel"), labels[i]) << "after step " << i;
    }

    // The next start opens the same deck without showing the window.
    SlidesWindow again;
    EXPECT_FALSE(again.isVisible());
    EXPECT_EQ(text(again, "pageLabel"), u"1 / 3"_s);
    again.toggle();
    EXPECT_TRUE(again.isVisible());
    again.toggle();
    EXPECT_FALSE(again.isVisible());
}

TEST_F(SlidesWindowTest, FilesThatCannotBeShownLeaveTheDeckAsItIs)
{
    QFile(path(u"empty.pdf"_s)).open(QIODevice::WriteOnly);
    QFile damaged(path(u"damaged.pdf"_s));
    damaged.open(QIODevice::WriteOnly);
    damaged.write("%PDF-1.7\n1 0 obj << /Type /Catalog /Pages 9 0 R >>\nthis is not a PDF body\n%%EOF\n");
    damaged.close();
    SlideFixtures::writeEncryptedPdf(path(u"locked.pdf"_s));

    SlidesWindow window;
    window.open(deck(u"good.pdf"_s, 4));
    for (const char *name : {"empty.pdf", "damaged.pdf", "locked.pdf", "missing.pdf"}) {
        window.open(path(QString::fromLatin1(name)));
        EXPECT_TRUE(emptyShows(window, u"打不开这个文件。"_s)) << name;
        EXPECT_EQ(text(window, "pageLabel"), u"1 / 4"_s) << name;
        EXPECT_EQ(window.windowTitle(), u"课件 · good"_s) << name;
    }
}

TEST_F(SlidesWindowTest, ShowsTheSuggestionAndTurnsWithTheSwitch)
{
    ManualTimers timers;
    auto fake = std::make_shared<FakeProvider>();
    fake->setHandler([](const FakeProvider::Call &) { return u"{\"page\": 2, \"sure\": true}"_s; });
    SlidesWindow window(timers.schedule());
    window.makeProvider = [fake] { return fake; };
    window.open(deck(u"deck.pdf"_s, 5));

    const auto listen = [&] {
        window.heard(u"now the second topic"_s);
        window.heard(u"topic two is about"_s);
        timers.advance(SlideFollower::tick);
    };
    const QString offer = u"老师可能在讲第 2 页 →"_s;
    ASSERT_TRUE(runEventsUntil([&] {
        if (hintShows(window, offer))
            return true;
        listen();  // until the page texts are read, nothing is asked
        return false;
    }));
    EXPECT_TRUE(fake->calls().last().prompt().contains(u"[2] Page 2: topic 2\n"_s)) << fake->calls().last().prompt().toStdString();
    EXPECT_EQ(text(window, "pageLabel"), u"1 / 5"_s);
    button(window, "hint")->click();
    EXPECT_EQ(text(window, "pageLabel"), u"2 / 5"_s);
    EXPECT_FALSE(button(window, "hint")->isVisible());

    // With the switch on, the next page comes by itself, and the choice is kept.
    fake->setHandler([](const FakeProvider::Call &) { return u"{\"page\": 3, \"sure\": true}"_s; });
    button(window, "autoSwitch")->click();
    EXPECT_TRUE(QSettings().value(u"slides.autoFlip"_s).toBool());
    listen();
    ASSERT_TRUE(runEventsUntil([&] { return text(window, "pageLabel") == u"3 / 5"_s; }));
    EXPECT_FALSE(button(window, "hint")->isVisible());

    window.stopFollowing();
    const qsizetype asked = fake->calls().size();
    timers.advance(10 * SlideFollower::tick);
    EXPECT_EQ(fake->calls().size(), asked);
}

TEST_F(SlidesWindowTest, APictureDeckSaysItCannotFollow)
{
    SlideFixtures::writePdf(path(u"photos.pdf"_s), {QString(), QString(), u"图"_s});
    SlidesWindow window;
    window.open(path(u"photos.pdf"_s));
    EXPECT_TRUE(runEventsUntil([&] { return hintShows(window, u"这份课件是图片，没法自动跟随"_s); }));
}

TEST_F(SlidesWindowTest, OpensFilesFromTheDialogAndFromADrop)
{
    SlidesWindow window;
    window.show();
    for (auto *b : window.findChildren<QAbstractButton *>())
        if (b->text() == u"打开课件…")
            b->click();
    auto *dialog = window.findChild<QFileDialog *>();
    ASSERT_TRUE(dialog);
    EXPECT_TRUE(dialog->isVisible());
    EXPECT_EQ(dialog->windowModality(), Qt::WindowModal);
    EXPECT_TRUE(dialog->nameFilters().first().contains(u"*.pdf *.ppt *.pptx *.key *.odp"_s));
    dialog->selectFile(deck(u"a.pdf"_s, 3));
    static_cast<QDialog *>(dialog)->accept();
    EXPECT_EQ(text(window, "pageLabel"), u"1 / 3"_s);

    QFile(path(u"notes.txt"_s)).open(QIODevice::WriteOnly);
    EXPECT_FALSE(drop(window.findChild<SlidesDrop *>(), {QUrl::fromLocalFile(path(u"notes.txt"_s))}));
    EXPECT_EQ(text(window, "pageLabel"), u"1 / 3"_s);
    EXPECT_TRUE(drop(window.findChild<SlidesDrop *>(),
                     {QUrl::fromLocalFile(path(u"notes.txt"_s)), QUrl::fromLocalFile(deck(u"b.pdf"_s, 2))}));
    EXPECT_EQ(text(window, "pageLabel"), u"1 / 2"_s);
}

TEST_F(SlidesWindowTest, PresentationsNeedLibreOffice)
{
    SlideFixtures::writePresentation(path(u"week 5.odp"_s), {u"Supply and demand"_s, u"한계 비용 곡선"_s});
    SlidesWindow window;
    {
        const QByteArray searchPath = qgetenv("PATH");
        qputenv("PATH", "");
        window.open(path(u"week 5.odp"_s));
        qputenv("PATH", searchPath);
    }
    EXPECT_TRUE(emptyShows(window, u"PPT 需要先导出成 PDF：在 PowerPoint 里选「文件 › 导出 › PDF」，再把 PDF 拖进来。\n"
                                   u"（装了 LibreOffice 的话，Quillet 会自动转换。）"_s));
    if (SlideConverter::program().isEmpty())
        GTEST_SKIP() << "LibreOffice (soffice) is not installed";

    window.open(path(u"gone.pptx"_s));
    EXPECT_TRUE(emptyShows(window, u"正在用 LibreOffice 转换 gone.pptx…"_s));
    ASSERT_TRUE(runEventsUntil([&] { return !text(window, "empty").startsWith(u"正在"); }, std::chrono::seconds(90)));
    EXPECT_TRUE(emptyShows(window, u"转换没有成功。可以在 PowerPoint / LibreOffice 里导出 PDF 再拖进来。"_s));

    window.open(path(u"week 5.odp"_s));
    ASSERT_TRUE(runEventsUntil([&] { return text(window, "pageLabel") == u"1 / 2"_s; }, std::chrono::seconds(90)));
    EXPECT_EQ(window.windowTitle(), u"课件 · week 5"_s);
    EXPECT_FALSE(window.findChild<QLabel *>(u"empty"_s)->isVisible());
}
