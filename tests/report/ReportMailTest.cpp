#include "EventLoop.h"
#include "QtPrinters.h"
#include "TestServer.h"
#include "account/Relay.h"
#include "platform/FileSecretStore.h"
#include "platform/Keychain.h"
#include "report/ReportMail.h"
#include "settings/UserDefaults.h"
#include "text/Json.h"

#include <QImage>
#include <QLocale>
#include <QSettings>
#include <QTemporaryDir>

#include <gtest/gtest.h>

using namespace Qt::StringLiterals;

TEST(ReportMail, RendersTheWholeMail)
{
    QLocale::setDefault(QLocale(QLocale::English, QLocale::UnitedStates));
    const ClassReport report{u"# 极限\n- **定义** a<b\n- 性质\n\n小结"_s,
                             {{u"期中"_s, u"2026-12-01"_s, u"10:00"_s, u"第 1–3 章"_s},
                              {u"作业"_s, u"2026-12-08"_s, u""_s, u""_s}},
                             std::nullopt};
    const QDateTime date(QDate(2026, 11, 18), QTime(14, 5));
    const QString html = ReportMail::html(u"微积分 & 习题"_s, date, report, true);
    QLocale::setDefault(QLocale(QLocale::Chinese, QLocale::China));
    EXPECT_TRUE(ReportMail::html({}, date, {}, false).contains(u"Quillet 课堂笔记 · 2026年11月18日 下午 2:05</p>"_s));
    QLocale::setDefault(QLocale::system());
    EXPECT_EQ(html,
              u"<div style=\"font-family:-apple-system,'PingFang SC',sans-serif;color:#1d1d1f;max-width:640px;"
              u"margin:0 auto;line-height:1.6;font-size:14px\">\n<p style=\"color:#888;font-size:12px;margin:0\">"
              u"Quillet 课堂笔记 · Nov 18, 2026, 2:05 PM</p>\n<h2 style=\"font-size:20px;margin:6px 0 14px\">"
              u"微积分 &amp; 习题</h2>\n<h3 style=\"font-size:16px;margin:18px 0 6px\">极限</h3>"
              u"<ul style=\"margin:4px 0 10px;padding-left:20px\"><li style=\"margin:3px 0\"><b>定义</b> a&lt;b</li>"
              u"<li style=\"margin:3px 0\">性质</li></ul><p style=\"margin:8px 0\">小结</p>"
              u"<h3 style=\"font-size:16px;margin:22px 0 6px\">📅 重要日期</h3><ul style=\"padding-left:20px\">"
              u"<li style=\"margin:4px 0\"><b>2026-12-01 10:00</b>\u3000期中<br><span style=\"color:#666\">第 1–3 章"
              u"</span></li><li style=\"margin:4px 0\"><b>2026-12-08 </b>\u3000作业</li></ul>"
              u"<p style=\"color:#888;font-size:12px\">在 Quillet 的消息中心里可以一键加入日历。</p>"
              u"<h3 style=\"font-size:16px;margin:26px 0 8px\">🧠 本节课思维导图</h3><img src=\"cid:mindmap\" "
              u"alt=\"思维导图\" style=\"width:100%;max-width:100%;border:1px solid #eee;border-radius:10px\">"
              u"\n<p style=\"color:#aaa;font-size:11px;margin-top:28px\">由 Quillet 根据课堂录音整理，已与文字稿逐条核对。"
              u"可在 Quillet 设置里关闭邮件。</p>\n</div>"_s);
}

TEST(ReportMail, ConvertsOnlyHeadingsListsParagraphsAndBold)
{
    const QString ul = u"<ul style=\"margin:4px 0 10px;padding-left:20px\">"_s;
    const QString p = u"<p style=\"margin:8px 0\">"_s;
    const QString h3 = u"<h3 style=\"font-size:16px;margin:18px 0 6px\">"_s;
    const struct
    {
        QString notes;
        QString html;
    } cases[] = {
        {u"## 标题\n- 一\n* 二\n\n正文"_s,
         h3 + u"标题</h3>" + ul + u"<li style=\"margin:3px 0\">一</li><li style=\"margin:3px 0\">二</li></ul>" + p
             + u"正文</p>"},
        {u"\t• 末项  "_s, ul + u"<li style=\"margin:3px 0\">末项</li></ul>"},
        {u"**x** < **y**"_s, p + u"<b>x</b> &lt; <b>y</b></p>"},
        {u"**没有结尾"_s, p + u"**没有结尾</p>"},
        {u"1. 第一点"_s, p + u"1. 第一点</p>"},
        {u"### C# 语言 ##"_s, h3 + u"C# 语言</h3>"},
        {u"-不是列表"_s, p + u"-不是列表</p>"},
        {u"\n \n"_s, u""_s},
    };
    for (const auto &[notes, html] : cases)
        EXPECT_EQ(ReportMail::notesHtml(notes), html) << notes;
}

namespace {

class ReportMailSend : public ::testing::Test
{
protected:
    void SetUp() override
    {
        Keychain::useStore(std::make_unique<FileSecretStore>(folder.filePath(u"secrets.json"_s)));
        Keychain::set(QString::fromLatin1(Relay::sessionAccount), u"tok-1"_s);
        QSettings().setValue(QString::fromLatin1(UserDefaults::relayURL), server.url());
    }
    void TearDown() override
    {
        Keychain::useStore(nullptr);
        QSettings().remove(QString::fromLatin1(UserDefaults::relayURL));
    }

    ReportMail::Outcome send(const ClassReport &report)
    {
        std::optional<ReportMail::Outcome> outcome;
        ReportMail::send(u"物理"_s, QDateTime::currentDateTime(), report, &context,
                         [&](const ReportMail::Outcome &sent) { outcome = sent; });
        EXPECT_TRUE(runEventsUntil([&] { return outcome.has_value(); }));
        return outcome.value_or(u"no outcome"_s);
    }

    QTemporaryDir folder;
    TestServer server;
    QObject context;
};

} // namespace

TEST_F(ReportMailSend, PostsTheMailWithTheSessionAndWordsEachOutcome)
{
    const ClassReport withMap{u"笔记"_s, {}, MindNode{u"力学"_s, QList<MindNode>{{u"牛顿定律"_s, std::nullopt}}}};
    server.enqueue(TestServer::Response::json("{}"));
    EXPECT_EQ(send(withMap), std::nullopt);
    const TestServer::Request request = server.requests().first();
    EXPECT_EQ(request.method, "POST");
    EXPECT_EQ(request.path, "/mail/report");
    EXPECT_EQ(request.header("x-quillet-session"), "tok-1");
    EXPECT_EQ(request.header("content-type"), "application/json");
    const QJsonObject body = *Text::Json::parseObject(request.body);
    EXPECT_EQ(body.value(u"subject").toString(), u"课堂笔记：物理"_s);
    EXPECT_TRUE(body.value(u"html").toString().contains(u"cid:mindmap"_s));
    EXPECT_FALSE(QImage::fromData(QByteArray::fromBase64(body.value(u"image").toString().toLatin1()), "PNG").isNull());

    const ClassReport plain{u"笔记"_s, {}, std::nullopt};
    TestServer::Response notHttp;
    notHttp.raw = true;
    notHttp.body = "<html>relay busy</html>";
    server.enqueue(TestServer::Response::json(R"({"error":{"message":"limit"}})", 429));
    server.enqueue(TestServer::Response::json("<html>oops</html>", 500));
    server.enqueue(notHttp);
    EXPECT_EQ(send(plain), u"今天发的邮件太多了。"_s);
    EXPECT_EQ(send(plain), u"邮件没发出去（500）。"_s);
    EXPECT_EQ(send(plain), u"连不上网络。"_s) << "an answer that isn't HTTP is no answer";
    const QJsonObject plainBody = *Text::Json::parseObject(server.requests()[1].body);
    EXPECT_FALSE(plainBody.contains(u"image"));
    EXPECT_FALSE(plainBody.value(u"html").toString().contains(u"cid:mindmap"_s));

    QSettings().setValue(QString::fromLatin1(UserDefaults::relayURL), u"http://127.0.0.1:1"_s);
    EXPECT_EQ(send(plain), u"连不上网络。"_s);
    Keychain::set(QString::fromLatin1(Relay::sessionAccount), QString());
    EXPECT_EQ(send(plain), u"没有登录。"_s);
    EXPECT_EQ(server.requests().size(), 4);
}
