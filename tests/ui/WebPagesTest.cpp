#include "support/PageProbe.h"
#include "ui/web/FeedView.h"
#include "ui/web/PageView.h"
#include "ui/web/TranscriptView.h"

#include <QCoreApplication>
#include <QElapsedTimer>
#include <QJsonArray>
#include <QJsonDocument>
#include <QSignalSpy>
#include <QTest>
#include <QWebEnginePage>
#include <QWebEngineView>

#include <gtest/gtest.h>

#include <iostream>

using namespace Qt::StringLiterals;

void PrintTo(const QJsonValue &value, std::ostream *out)
{
    *out << QJsonDocument(QJsonArray{value}).toJson(QJsonDocument::Compact).toStdString();
}

void PrintTo(const QJsonArray &value, std::ostream *out)
{
    *out << QJsonDocument(value).toJson(QJsonDocument::Compact).toStdString();
}

namespace {

// An array holding one array (braces alone would copy the inner one).
QJsonArray one(const QJsonArray &inner)
{
    QJsonArray outer;
    outer.append(inner);
    return outer;
}

using PageProbe::evaluate;
using PageProbe::read;

template <typename View>
void waitReady(View &view)
{
    view.web()->resize(600, 400);
    view.web()->show();
    ASSERT_TRUE(QTest::qWaitFor([&] { return view.ready(); }, 30000));
}

const QString rowsText = u"[...document.querySelectorAll('#rows .row')].map(r => "
                         u"[r.dataset.id, r.querySelector('.src').textContent, r.querySelector('.dst').textContent])"_s;
const QString draftsText = u"[...document.querySelectorAll('#drafts .row')].map(r => "
                           u"[r.querySelector('.src').textContent, r.querySelector('.dst').textContent])"_s;

} // namespace

TEST(TranscriptView, CallsBeforeTheLoadRunInCallOrderOnceItFinishes)
{
    TranscriptView view(u"bar"_s, 22);
    view.setFont(u"wenkai"_s);
    view.clear(u"hint"_s);
    view.addLine(1, u"first"_s);
    view.setText(1, u"second"_s);
    view.setTranslation(1, u"译文"_s);
    view.setDrafts({{u"d"_s, u""_s}});
    view.setFontSize(30);
    view.setColors(u"#ffd84d"_s, u"not a colour"_s);
    EXPECT_FALSE(view.ready());
    waitReady(view);

    EXPECT_EQ(read(view.web(), u"document.body.className"_s), u"bar"_s);
    EXPECT_EQ(read(view.web(), u"document.documentElement.style.fontSize"_s), u"30px"_s);
    EXPECT_TRUE(read(view.web(), u"getComputedStyle(document.body).fontFamily"_s).toString().contains(u"LXGW WenKai"_s));
    EXPECT_EQ(read(view.web(), rowsText), one({u"1"_s, u"second"_s, u"译文"_s}));
    EXPECT_EQ(read(view.web(), draftsText), one({u"d"_s, u""_s}));
    EXPECT_EQ(read(view.web(), u"document.getElementById('hint').hidden"_s), true);
    EXPECT_EQ(read(view.web(), u"['dst', 'src'].map(c => getComputedStyle(document.querySelector('#rows .' + c)).color)"_s),
              QJsonArray({u"rgb(255, 216, 77)"_s, u"rgb(185, 198, 200)"_s}));
}

TEST(TranscriptView, TextsArriveUnchangedAndMarkupStaysText)
{
    const QStringList texts = {
        u"He said \"stop\" and 'go'"_s,
        u"C:\\path\\n is not a line break \\\" \\u0041"_s,
        u"two\nlines\r\nand\ttab"_s,
        u"emoji 🎓👩‍🏫 and 한국어 강의입니다"_s,
        u"<img src=x onerror=\"window.hacked=1\"><script>window.hacked=2</script>&amp;"_s,
        u"</script><b>bold?</b> ${1+1} `tick`"_s,
        QString(20000, u'长'),
    };
    TranscriptView view(u"panel"_s, 15);
    waitReady(view);
    QJsonArray expected;
    for (int i = 0; i < texts.size(); ++i) {
        view.addLine(i + 100, texts[i]);
        view.setTranslation(i + 100, texts[i]);
        expected.append(QJsonArray{QString::number(i + 100), texts[i], texts[i]});
    }
    view.setDrafts({{texts[4], texts[3]}});
    EXPECT_EQ(read(view.web(), rowsText), expected);
    EXPECT_EQ(read(view.web(), draftsText), one({texts[4], texts[3]}));
    EXPECT_EQ(read(view.web(), u"document.querySelectorAll('img, b, #rows script').length"_s), 0);
    EXPECT_EQ(read(view.web(), u"window.hacked === undefined"_s), true);
}

TEST(TranscriptView, DraftsAreReplacedAsAWholeAndActiveRowsFoundByDecimalId)
{
    TranscriptView view(u"panel"_s, 15);
    waitReady(view);
    view.addLine(12, u"twelve"_s);
    view.addLine(120, u"one twenty"_s);
    struct Step { TranscriptSurface::Drafts drafts; QJsonArray shown; };
    const QList<Step> steps = {
        {{{u"a"_s, u"A"_s}, {u"b"_s, u""_s}, {u"c"_s, u"C"_s}}, {QJsonArray{u"a"_s, u"A"_s}, QJsonArray{u"b"_s, u""_s}, QJsonArray{u"c"_s, u"C"_s}}},
        {{{u"b2"_s, u"B"_s}}, one({u"b2"_s, u"B"_s})},
        {{}, {}},
    };
    for (const Step &step : steps) {
        view.setDrafts(step.drafts);
        EXPECT_EQ(read(view.web(), draftsText), step.shown);
        EXPECT_EQ(read(view.web(), rowsText).toArray().size(), 2);
    }
    for (const int id : {12, 120, 12}) {
        view.setActive(id);
        EXPECT_EQ(read(view.web(), u"[...document.querySelectorAll('.row.active')].map(r => r.dataset.id)"_s),
                  QJsonArray{QString::number(id)});
    }
    view.clear(u"这节课没有识别到内容"_s);
    EXPECT_EQ(read(view.web(), rowsText), QJsonArray());
    EXPECT_EQ(read(view.web(), u"[document.getElementById('hint').hidden, document.getElementById('hint').textContent]"_s),
              QJsonArray({false, u"这节课没有识别到内容"_s}));
}

TEST(TranscriptView, LineMessagesTakeOnlyDecimalIntegers)
{
    TranscriptView view(u"panel"_s, 15);
    QList<int> clicked;
    view.onLineClick = [&](int id) { clicked.append(id); };
    view.addLine(7, u"seven"_s);
    view.setSeekable(true);
    waitReady(view);
    // Page-side bodies, then a row click; the last one tells that all earlier ones were delivered.
    const QString bodies = u"['7', 7, '+8', '-3', 'x7', '', ' 7', '7 ', 12.5, '99999999999', null, true, [7], {id: 7}]"_s;
    evaluate(view.web(), u"for (const b of "_s + bodies + u") Page.post('line', b);"
                         u"document.querySelector('.row[data-id=\"7\"]').click(); Page.post('line', '1000');"_s);
    ASSERT_TRUE(QTest::qWaitFor([&] { return clicked.contains(1000); }, 10000));
    EXPECT_EQ(clicked, QList<int>({7, 7, 8, -3, 7, 1000}));
}

TEST(FeedView, ShowsEveryKindOfEntryAsTextAndPostsOnlyStringEventIds)
{
    FeedView feed;
    QStringList added;
    feed.onAddEvent = [&](const QString &id) { added.append(id); };
    feed.setName(u"Quill"_s);
    feed.addCard(u"考试重点"_s, u"<b>期中考试</b> \"第3章\""_s, u"14:05"_s);
    feed.addNote(u"翻译服务暂时不可用"_s);
    feed.showYou(u"这个词什么意思？\n📎 slides.pdf"_s, {});
    waitReady(feed);
    EXPECT_EQ(read(feed.web(), u"document.querySelectorAll('.typing').length"_s), 1);
    feed.addReply(u"意思是 \\ \"边际\""_s);
    feed.setSummary(u"旧的"_s, u"14:00"_s, false);
    feed.setSummary(u"本节课讲了边际成本。"_s, u"14:30"_s, true);
    feed.setVocabulary({{u"marginal"_s, u"边际的"_s, u""_s}, {u"강의"_s, u"讲课"_s, u"韩语"_s}});
    feed.addEvent(u"ab12cd34"_s, {u"期中考试"_s, u"2026-11-30"_s, u"09:00"_s, std::nullopt});
    feed.markEventAdded(u"ab12cd34"_s);
    feed.addEvent(u"ef56"_s, {u"交作业"_s, u"2026-12-02"_s, std::nullopt, u"第二章"_s});

    const QJsonArray expected = {
        QJsonArray{u"card exam"_s, u"考试重点14:05<b>期中考试</b> \"第3章\""_s},
        QJsonArray{u"note"_s, u"翻译服务暂时不可用"_s},
        QJsonArray{u"bubble you"_s, u"这个词什么意思？\n📎 slides.pdf"_s},
        QJsonArray{u"bubble ai"_s, u"Quill意思是 \\ \"边际\""_s},
        QJsonArray{u"event added"_s, u"11月30期中考试2026-11-30 09:00已加入 ✓"_s},
        QJsonArray{u"event"_s, u"12月2交作业2026-12-02第二章加入日历"_s},
    };
    EXPECT_EQ(read(feed.web(), u"[...document.getElementById('stream').children].map(e => [e.className, e.textContent])"_s),
              expected);
    EXPECT_EQ(read(feed.web(), u"(s => [s.hidden, s.querySelector('.text').textContent, s.querySelector('time').textContent, "
                               u"s.querySelector('.badge').hidden])(document.getElementById('summary'))"_s),
              QJsonArray({false, u"本节课讲了边际成本。"_s, u"14:30"_s, false}));
    EXPECT_EQ(read(feed.web(), u"[...document.querySelectorAll('.terms li')].map(li => li.textContent)"_s),
              QJsonArray({u"marginal边际的"_s, u"강의讲课韩语"_s}));
    EXPECT_EQ(read(feed.web(), u"document.querySelectorAll('#stream b').length"_s), 0);

    evaluate(feed.web(), u"Page.post('calendar', 5); Page.post('calendar', {id: 'x'}); Page.post('calendar', null);"
                         u"document.querySelector('.event[data-id=\"ef56\"] button').click();"_s);
    ASSERT_TRUE(QTest::qWaitFor([&] { return !added.isEmpty(); }, 10000));
    EXPECT_EQ(added, QStringList{u"ef56"_s});
}

TEST(PageView, APageThatFailsToLoadStaysBlankAndKeepsItsQueue)
{
    PageView page(u"qrc:/no-such-page.html"_s);
    QSignalSpy finished(page.web(), &QWebEngineView::loadFinished);
    page.call(u"addLine"_s, {u"1"_s, u"x"_s});
    ASSERT_TRUE(finished.wait(30000));
    EXPECT_FALSE(page.ready());
    EXPECT_EQ(PageView::script(u"addLine"_s, {u"1"_s, u"a\"b\n"_s, true, 2.5}), u"addLine(...[\"1\",\"a\\\"b\\n\",true,2.5])"_s);
    EXPECT_EQ(PageView::script(u"showTyping"_s, {}), u"showTyping(...[])"_s);
}

TEST(TranscriptView, TenThousandRowsWithDraftsBetweenThemKeepTheirOrder)
{
    TranscriptView view(u"panel"_s, 15);
    waitReady(view);
    QElapsedTimer timer;
    timer.start();
    for (int id = 0; id < 10000; ++id) {
        view.addLine(id, QString::number(id));
        view.setDrafts({{u"draft "_s + QString::number(id), {}}});
    }
    const QJsonValue order = read(view.web(), u"[...document.querySelectorAll('#rows .row')].every((r, i) => "
                                               u"r.dataset.id === String(i) && r.querySelector('.src').textContent === String(i))"
                                               u" && document.querySelectorAll('#rows .row').length"_s);
    std::cout << "10,000 rows and 10,000 draft updates shown in " << timer.elapsed() << " ms\n";
    EXPECT_EQ(order, 10000);
}
