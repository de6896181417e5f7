// The library with fifty classes in Chinese and Korean, one open on its transcript, light and dark.
// With QUILLET_SCREENSHOT_DIR set the pictures are saved there as library-*.png for a look.

#include "support/Screenshots.h"
#include "LibraryFixture.h"

#include "ui/common/Look.h"
#include "ui/web/TranscriptView.h"

#include <QSet>
#include <QTest>

using namespace Qt::StringLiterals;
using LibraryScreenshots = LibraryFixture;

namespace {

const QList<std::pair<QString, QString>> lecture = {
    {u"오늘은 열역학 제2법칙과 엔트로피의 의미를 살펴보겠습니다."_s, u"今天我们来看热力学第二定律和熵的含义。"_s},
    {u"닫힌 계에서 엔트로피는 줄어들지 않습니다."_s, u"在封闭系统中，熵不会减少。"_s},
    {u"Remember: this will be on the midterm, chapter three."_s, u"记住：这会出现在期中考试里，第三章。"_s},
    {u"다음 주까지 과제를 제출하세요."_s, u"下周之前提交作业。"_s},
    {u"질문 있으면 지금 해 주세요."_s, u"有问题的话现在问吧。"_s},
};

} // namespace

TEST_F(LibraryScreenshots, FiftyClassesInChineseAndKoreanLightAndDark)
{
    const QStringList courses{u"热力学"_s, u"미시경제학"_s, u"线性代数"_s, u"한국 현대사"_s, u"有机化学"_s};
    const QStringList topics{u"第二定律与熵"_s, u"수요와 공급"_s, u"特征值与特征向量"_s, u"1987년 민주화 운동"_s,
                             u"亲核取代反应"_s, u"期中复习"_s, u"시험 범위 정리"_s};
    QString opened;
    for (int i = 0; i < 50; ++i) {
        const QString folder = make(topics[i % topics.size()] + u" · 第 "_s + QString::number(50 - i) + u" 讲"_s,
                                    i % 6 == 5 ? std::nullopt : std::optional(courses[i % courses.size()]), i * 26, 0);
        SessionData data = *SessionStore::load(folder);
        for (int l = 0; l < lecture.size(); ++l)
            data.lines.append({l * 7.5, lecture[l].first, lecture[l].second});
        data.duration = 4'980 + i * 31;
        if (i == 0) {
            data.summary = u"本节课介绍了热力学第二定律：封闭系统的熵不会减少。"_s;
            data.notes = {{312, u"考试重点"_s, u"期中考试考第三章：熵与第二定律。"_s},
                          {1'020, u"可以这样回答"_s, u"因为封闭系统的熵只会增加或不变。"_s}};
            data.vocabulary = QList<SessionData::Term>{{u"엔트로피"_s, u"熵"_s, u"衡量无序程度的物理量"_s},
                                                       {u"열역학"_s, u"热力学"_s, {}}};
            data.refined = true;
            opened = folder;
        }
        SessionStore::write(data, folder);
    }
    const auto save = [](const QImage &image, const QString &name) {
        Screenshots::keep(image, u"library-"_s + name);
    };
    for (const QString &theme : {u"light"_s, u"dark"_s}) {
        Look::apply(theme);
        window_->resize(960, 640);
        window_->QWidget::show();
        reload();
        ASSERT_EQ(currentFolder(), opened);
        TranscriptView *transcript = window_->detail()->transcript();
        ASSERT_TRUE(QTest::qWaitFor([&] { return transcript->ready(); }, 30'000));
        transcript->setActive(1);
        QTest::qWait(700);   // the page's fonts and its scroll settle
        const QImage image = window_->grab().toImage();
        save(image, theme);
        EXPECT_GT(Screenshots::colours(image), 60) << theme.toStdString() << ": nothing drawn";
        window_->detail()->setTab(LibraryDetail::aiNotesTab);
        save(window_->grab().toImage(), theme + u"-notes"_s);
        window_->detail()->setTab(LibraryDetail::transcriptTab);
        window_->hide();
    }
    Look::apply(u"light"_s);
}
