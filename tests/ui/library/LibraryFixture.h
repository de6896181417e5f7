#pragma once

// What the library tests share: a documents folder and a clock of their own behind the store,
// classes written into it, a library window whose delayed notes saves the test runs by hand, and
// the window's parts found by name.

#include "session/SessionStore.h"
#include "ui/library/LibraryDetail.h"
#include "ui/library/LibraryWindow.h"

#include "EventLoop.h"
#include "ManualClock.h"
#include "QtPrinters.h"

#include <QAbstractButton>
#include <QComboBox>
#include <QDir>
#include <QLabel>
#include <QLineEdit>
#include <QListView>
#include <QSignalSpy>
#include <QTemporaryDir>
#include <QTest>

#include <gtest/gtest.h>

#include <functional>
#include <memory>
#include <vector>

class LibraryFixture : public ::testing::Test
{
protected:
    void SetUp() override
    {
        ASSERT_TRUE(documents_.isValid());
        SessionStore::useDocumentsFolder(documents_.path());
        SessionStore::useClock(&clock_);
        window_ = std::make_unique<LibraryWindow>(
            [this](std::chrono::milliseconds, std::function<void()> task) { saves_.push_back(std::move(task)); });
    }
    void TearDown() override
    {
        // No listing may read the folder once it is gone.
        EXPECT_TRUE(QTest::qWaitFor([&] { return !window_->listing(); }, 10'000));
        window_.reset();
        SessionStore::useDocumentsFolder({});
        SessionStore::useClock(nullptr);
    }

    // A class started `hoursAgo` before the clock's now, with `lines` lines ("line i" / "第 i 行").
    QString make(const QString &title, const std::optional<QString> &category, int hoursAgo = 1, int lines = 3)
    {
        SessionData data = SessionData::make(QStringLiteral("en"), QStringLiteral("zh"), clock_.now().addSecs(-3600 * hoursAgo));
        data.title = title;
        data.category = category;
        for (int i = 0; i < lines; ++i)
            data.lines.append({i * 2.0, QStringLiteral("line %1").arg(i), QStringLiteral("第 %1 行").arg(i)});
        data.duration = lines * 2.0;
        const QString folder = SessionStore::unique(SessionStore::root() + u'/' + title.left(40).trimmed() + u"-x");
        QDir().mkpath(folder);
        SessionStore::write(data, folder);
        return folder;
    }

    // Reloads and waits until the listing of the store as it is now has reached the list.
    void reload()
    {
        QSignalSpy listed(window_.get(), &LibraryWindow::listed);
        window_->reload();
        ASSERT_TRUE(QTest::qWaitFor([&] { return !listed.isEmpty() && !window_->listing(); }, 10'000));
    }

    template<typename T>
    T *part(const char *name) const
    {
        T *found = window_->findChild<T *>(QString::fromLatin1(name));
        EXPECT_NE(found, nullptr) << name;
        return found;
    }

    QStringList rows() const
    {
        QStringList titles;
        auto *model = part<QListView>("table")->model();
        for (int row = 0; row < model->rowCount(); ++row)
            titles << model->index(row, 0).data().toString();
        return titles;
    }
    QString rowDetail(int row) const
    {
        return part<QListView>("table")->model()->index(row, 0).data(Qt::UserRole + 1).toString();
    }
    void click(int row)
    {
        auto *table = part<QListView>("table");
        table->setCurrentIndex(table->model()->index(row, 0));
    }
    void choose(const QString &filterTitle)
    {
        auto *filter = part<QComboBox>("filter");
        const int index = filter->findText(filterTitle);
        ASSERT_GE(index, 0) << filterTitle;
        filter->setCurrentIndex(index);
        filter->activated(index);
    }
    void search(const QString &text) { part<QLineEdit>("search")->setText(text); }
    // Types into a field and leaves it, as the student would.
    void enter(const char *field, const QString &text)
    {
        QLineEdit *edit = std::string_view(field) == "category" ? part<QComboBox>("category")->lineEdit()
                                                                : part<QLineEdit>(field);
        edit->setText(text);
        edit->editingFinished();
    }
    QString currentFolder() const { return window_->current() ? window_->current()->folder : QString(); }
    void runSaves()
    {
        auto due = std::exchange(saves_, {});
        for (auto &task : due)
            task();
    }

    QTemporaryDir documents_;
    ManualClock clock_{QDateTime(QDate(2026, 11, 20), QTime(9, 0), Qt::UTC)};
    std::vector<std::function<void()>> saves_;
    std::unique_ptr<LibraryWindow> window_;
};
