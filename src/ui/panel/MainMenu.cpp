#include "ui/panel/MainMenu.h"

#include "app/AppController.h"

#include <QApplication>
#include <QMenu>
#include <QMenuBar>
#include <QWebEngineView>
#include <QWidget>

namespace {

QAction *item(QMenu *menu, const QString &title, const QKeySequence &key, std::function<void()> action)
{
    QAction *entry = menu->addAction(title);
    if (!key.isEmpty()) {
        entry->setShortcut(key);
        entry->setShortcutContext(Qt::ApplicationShortcut);
    }
    QObject::connect(entry, &QAction::triggered, menu, std::move(action));
    return entry;
}

// Sends an editing command to the focused text, the way each kind of widget takes it.
void edit(const char *slot, QWebEnginePage::WebAction webAction)
{
    QWidget *focus = QApplication::focusWidget();
    for (QWidget *widget = focus; widget; widget = widget->parentWidget()) {
        if (auto *web = qobject_cast<QWebEngineView *>(widget)) {
            web->triggerPageAction(webAction);
            return;
        }
    }
    if (focus && focus->metaObject()->indexOfSlot(QMetaObject::normalizedSignature(slot).constData()) >= 0)
        QMetaObject::invokeMethod(focus, QByteArray(slot).chopped(2).constData());
}

void editMenu(QMenuBar *bar)
{
    QMenu *menu = bar->addMenu(QStringLiteral("编辑"));
    struct Command
    {
        const char16_t *title;
        QKeySequence::StandardKey key;
        const char *slot;
        QWebEnginePage::WebAction web;
    };
    const Command commands[] = {
        {u"撤销", QKeySequence::Undo, "undo()", QWebEnginePage::Undo},
        {u"重做", QKeySequence::Redo, "redo()", QWebEnginePage::Redo},
        {u"剪切", QKeySequence::Cut, "cut()", QWebEnginePage::Cut},
        {u"拷贝", QKeySequence::Copy, "copy()", QWebEnginePage::Copy},
        {u"粘贴", QKeySequence::Paste, "paste()", QWebEnginePage::Paste},
        {u"全选", QKeySequence::SelectAll, "selectAll()", QWebEnginePage::SelectAll},
    };
    for (const Command &command : commands) {
        if (command.web == QWebEnginePage::Cut)
            menu->addSeparator();
        // Text fields take their own keys first; the items serve the mouse.
        QAction *entry = menu->addAction(QString::fromUtf16(command.title));
        entry->setShortcut(command.key);
        entry->setShortcutContext(Qt::WidgetShortcut);
        QObject::connect(entry, &QAction::triggered, menu, [command] { edit(command.slot, command.web); });
    }
}

} // namespace

namespace MainMenu {

void build(QMenuBar *bar, AppController &controller, std::function<void()> quit)
{
    QMenu *app = bar->addMenu(QStringLiteral("Quillet"));
    item(app, QStringLiteral("关于 Quillet Beta"), {}, [&controller] { controller.showAbout(); });
    app->addSeparator();
    item(app, QStringLiteral("设置…"), QKeySequence(QStringLiteral("Ctrl+,")), [&controller] { controller.menuSettings(); });
    item(app, QStringLiteral("开始 / 停止录音"), QKeySequence(QStringLiteral("Ctrl+R")), [&controller] { controller.menuRecord(); });
    item(app, QStringLiteral("课程记录…"), QKeySequence(QStringLiteral("Ctrl+L")), [&controller] { controller.menuLibrary(); });
    item(app, QStringLiteral("在文件管理器中打开课程记录"), {}, [&controller] { controller.openNotes(); });
    item(app, QStringLiteral("打开单词本"), {}, [&controller] { controller.openWordBook(); });
    app->addSeparator();
    item(app, QStringLiteral("退出 Quillet"), QKeySequence(QStringLiteral("Ctrl+Q")), std::move(quit));

    editMenu(bar);

    QMenu *windows = bar->addMenu(QStringLiteral("窗口"));
    item(windows, QStringLiteral("显示 / 隐藏字幕条"), QKeySequence(QStringLiteral("Ctrl+1")), [&controller] { controller.menuSubtitles(); });
    item(windows, QStringLiteral("显示对话窗口"), QKeySequence(QStringLiteral("Ctrl+2")), [&controller] { controller.menuChat(); });
    item(windows, QStringLiteral("AI 问答小窗"), QKeySequence(QStringLiteral("Ctrl+3")), [&controller] { controller.menuAI(); });
    item(windows, QStringLiteral("合并 / 分开两个窗口"), QKeySequence(QStringLiteral("Ctrl+J")), [&controller] { controller.menuMerge(); });
    windows->addSeparator();
    item(windows, QStringLiteral("最小化"), QKeySequence(QStringLiteral("Ctrl+M")), [] {
        if (QWidget *window = QApplication::activeWindow())
            window->showMinimized();
    });
}

} // namespace MainMenu
