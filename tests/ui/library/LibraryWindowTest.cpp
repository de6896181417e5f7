#include "LibraryFixture.h"

#include "ui/library/LibraryNotes.h"
#include "ui/library/LibraryPlayer.h"

#include <QFile>
#include <QMessageBox>
#include <QPushButton>

using namespace Qt::StringLiterals;
using LibraryWindowTest = LibraryFixture;

TEST_F(LibraryWindowTest, SearchesNamesCategoriesAndTranslationsAndFallsBackWhenACategoryEmpties)
{
    const QString physics = make(u"Thermodynamics"_s, u"物理"_s, 1);
    SessionData withEntropy = *SessionStore::load(physics);
    withEntropy.lines[1].translation = u"熵总是增加"_s;
    SessionStore::write(withEntropy, physics);
    make(u"微观经济学"_s, u"经济"_s, 2);
    make(u"한국어 수업"_s, std::nullopt, 3);
    const QString broken = SessionStore::root() + u"/broken"_s;
    QDir().mkpath(broken);
    QFile record(broken + u"/session.json"_s);
    ASSERT_TRUE(record.open(QIODevice::WriteOnly));
    record.write(R"({"title": 5})");
    record.close();

    reload();
    EXPECT_EQ(rows(), (QStringList{u"Thermodynamics"_s, u"微观经济学"_s, u"한국어 수업"_s})) << "the broken record is left out";
    EXPECT_EQ(currentFolder(), physics) << "the first row opens";
    auto *filter = part<QComboBox>("filter");
    QStringList items;
    for (int i = 0; i < filter->count(); ++i)
        items << filter->itemText(i);
    EXPECT_EQ(items, (QStringList{u"全部"_s, u"物理"_s, u"经济"_s, u"未分类"_s, QString(), u"最近删除"_s}));

    struct Case { QString query; QStringList rows; };
    for (const Case &c : QList<Case>{{u"熵"_s, {u"Thermodynamics"_s}},
                                     {u"  THERMO "_s, {u"Thermodynamics"_s}},
                                     {u"经济"_s, {u"微观经济学"_s}},
                                     {u"第 2 行"_s, {u"Thermodynamics"_s, u"微观经济学"_s, u"한국어 수업"_s}},
                                     {u"nowhere at all"_s, {}}}) {
        search(c.query);
        EXPECT_EQ(rows(), c.rows) << c.query;
    }
    EXPECT_TRUE(part<QLabel>("empty")->isHidden()) << "the library isn't empty, only the search";
    search({});

    choose(u"未分类"_s);
    EXPECT_EQ(rows(), QStringList{u"한국어 수업"_s});
    choose(u"物理"_s);
    click(0);
    enter("category", u"  化学 "_s);
    reload();
    EXPECT_EQ(SessionStore::load(physics)->category, u"化学"_s);
    EXPECT_EQ(filter->currentText(), u"全部"_s);
    EXPECT_EQ(rows().size(), 3);
}

TEST_F(LibraryWindowTest, TitlesOfBlanksComeBackLongTitlesAreKeptAndRefiningShows)
{
    const QString folder = make(u"Chemistry"_s, std::nullopt);
    reload();
    enter("title", u"  \t "_s);
    EXPECT_EQ(part<QLineEdit>("title")->text(), u"Chemistry"_s);
    EXPECT_EQ(SessionStore::load(folder)->title, u"Chemistry"_s);

    const QString longTitle = QString(250, u'长') + QString(250, u'x');
    enter("title", longTitle);
    reload();
    EXPECT_EQ(SessionStore::load(folder)->title, longTitle);
    EXPECT_EQ(rows(), QStringList{longTitle});
    EXPECT_EQ(currentFolder(), folder);

    QFile(folder + u"/录音.m4a"_s).open(QIODevice::WriteOnly);
    window_->refresh(folder);
    reload();
    EXPECT_TRUE(part<QAbstractButton>("refine")->isEnabled());
    window_->setRefining({folder});
    window_->refresh(folder);
    reload();
    EXPECT_EQ(currentFolder(), folder) << "a refreshed class opens again";
    EXPECT_TRUE(part<QLabel>("info")->text().endsWith(u" · 正在精修文字稿…"_s)) << part<QLabel>("info")->text();
    EXPECT_FALSE(part<QAbstractButton>("refine")->isEnabled());
}

TEST_F(LibraryWindowTest, DeletesToTheTrashThenForGoodAfterAsking)
{
    const QString kept = make(u"Kept"_s, u"物理"_s, 1);
    const QString doomed = make(u"Doomed"_s, u"物理"_s, 2);
    reload();
    click(1);
    ASSERT_EQ(currentFolder(), doomed);
    part<QAbstractButton>("trash")->click();
    EXPECT_EQ(window_->findChild<QMessageBox *>(), nullptr) << "no question for the trash";
    EXPECT_FALSE(QFileInfo::exists(doomed));
    reload();
    EXPECT_EQ(rows(), QStringList{u"Kept"_s});
    EXPECT_EQ(part<QComboBox>("filter")->itemText(part<QComboBox>("filter")->count() - 1), u"最近删除（1）"_s);

    clock_.advance(std::chrono::hours(24 * 3 + 1));
    choose(u"最近删除（1）"_s);
    EXPECT_EQ(rows(), QStringList{u"Doomed"_s});
    click(0);
    EXPECT_TRUE(rowDetail(0).startsWith(u"12 天后永久删除 · 物理 · "_s)) << rowDetail(0);
    EXPECT_TRUE(part<QLabel>("info")->text().endsWith(u" · 12 天后永久删除"_s)) << part<QLabel>("info")->text();
    EXPECT_TRUE(part<QLineEdit>("title")->isReadOnly());
    EXPECT_TRUE(part<QPushButton>("restore")->isVisibleTo(window_.get()));

    part<QAbstractButton>("trash")->click();
    auto *ask = window_->findChild<QMessageBox *>(u"eraseQuestion"_s);
    ASSERT_NE(ask, nullptr);
    EXPECT_EQ(ask->text(), u"永久删除「Doomed」？"_s);
    EXPECT_EQ(ask->informativeText(), u"录音、文字稿和笔记会被彻底删除，无法恢复。"_s);
    const auto buttons = ask->buttons();
    const auto erase = std::find_if(buttons.begin(), buttons.end(), [](auto *b) { return b->text() == u"永久删除"_s; });
    ASSERT_NE(erase, buttons.end());
    (*erase)->click();
    reload();
    EXPECT_TRUE(SessionStore::listDeleted().isEmpty());
    EXPECT_TRUE(rows().isEmpty());
    EXPECT_EQ(part<QLabel>("empty")->text(), u"「最近删除」是空的。\n删除的课会在这里保留 15 天。"_s);
    EXPECT_FALSE(part<QLabel>("empty")->isHidden());
    EXPECT_EQ(SessionStore::list().size(), 1);
    EXPECT_EQ(SessionStore::list().first().first, kept);
}

TEST_F(LibraryWindowTest, NotesAreSavedToTheClassTheyWereTypedFor)
{
    const QString first = make(u"First"_s, std::nullopt, 1);
    const QString second = make(u"Second"_s, std::nullopt, 2);
    reload();
    LibraryNotes *notes = window_->detail()->notes();
    notes->setPlainText(u"第一节课的笔记"_s);
    EXPECT_EQ(SessionStore::myNotes(first), QString()) << "not before the second has passed";
    click(1);
    EXPECT_EQ(SessionStore::myNotes(first), u"第一节课的笔记"_s);
    EXPECT_EQ(notes->toPlainText(), QString());
    runSaves();
    EXPECT_EQ(SessionStore::myNotes(second), QString()) << "the first class's save is spent";

    notes->setPlainText(u"제2강 메모"_s);
    runSaves();
    EXPECT_EQ(SessionStore::myNotes(second), u"제2강 메모"_s);
    notes->setPlainText(u"closed at once"_s);
    window_->close();
    EXPECT_EQ(SessionStore::myNotes(second), u"closed at once"_s);
    EXPECT_EQ(SessionStore::myNotes(first), u"第一节课的笔记"_s);
}

TEST_F(LibraryWindowTest, TheLiveClassIsListedButNotPlayedDeletedOrRenamedOnDisk)
{
    const QString live = make(u"Now"_s, std::nullopt, 0);
    QFile(live + u"/录音.m4a"_s).open(QIODevice::WriteOnly);
    std::optional<std::pair<QString, std::optional<QString>>> renamed;
    window_->isLive = [&](const QString &folder) { return folder == live; };
    window_->onLiveRename = [&](const QString &title, const std::optional<QString> &category) {
        renamed = {title, category};
    };
    reload();
    EXPECT_TRUE(rowDetail(0).startsWith(u"● 录音中 · "_s)) << rowDetail(0);
    EXPECT_EQ(part<QLabel>("time")->text(), u"正在录音，停止后可以播放"_s);
    EXPECT_FALSE(window_->detail()->player()->hasPlayer());
    EXPECT_FALSE(part<QAbstractButton>("refine")->isEnabled());

    part<QAbstractButton>("trash")->click();
    auto *notice = window_->findChild<QMessageBox *>(u"liveNotice"_s);
    ASSERT_NE(notice, nullptr);
    EXPECT_EQ(notice->text(), u"这节课还在录音，先在主窗口点「停止」。"_s);
    EXPECT_TRUE(QFileInfo::exists(live));

    enter("category", u"物理"_s);
    ASSERT_TRUE(renamed);
    EXPECT_EQ(*renamed, std::pair(u"Now"_s, std::optional(u"物理"_s)));
    EXPECT_EQ(SessionStore::load(live)->category, std::nullopt) << "the live session writes its own record";
}

TEST_F(LibraryWindowTest, AClassDeletedOnDiskWhileOpenLeavesNoTrace)
{
    const QString gone = make(u"Gone"_s, std::nullopt, 1);
    make(u"Stays"_s, std::nullopt, 2);
    reload();
    ASSERT_EQ(currentFolder(), gone);
    ASSERT_TRUE(QDir(gone).removeRecursively());
    window_->detail()->notes()->setPlainText(u"typed into a vanished class"_s);
    enter("title", u"Renamed"_s);
    part<QAbstractButton>("trash")->click();
    EXPECT_FALSE(QFileInfo::exists(gone)) << "nothing writes the folder back";
    reload();
    EXPECT_EQ(rows(), QStringList{u"Stays"_s});
    EXPECT_EQ(part<QLineEdit>("title")->text(), u"Stays"_s);
}
