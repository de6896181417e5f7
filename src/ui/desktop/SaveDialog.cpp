#include "ui/desktop/SaveDialog.h"

#include "ui/art/PixelIcon.h"
#include "ui/common/Look.h"

#include <QComboBox>
#include <QCompleter>
#include <QDialogButtonBox>
#include <QFormLayout>
#include <QHBoxLayout>
#include <QLabel>
#include <QLineEdit>
#include <QPainter>
#include <QPushButton>
#include <QVBoxLayout>

namespace {

QLabel *waveform(const QPalette &palette)
{
    QImage mask = PixelIcon::image(QStringLiteral("wave"), 64).value_or(QImage());
    if (!mask.isNull()) {
        QPainter painter(&mask);
        painter.setCompositionMode(QPainter::CompositionMode_SourceIn);
        painter.fillRect(mask.rect(), palette.color(QPalette::Highlight));
    }
    auto *icon = new QLabel;
    icon->setPixmap(QPixmap::fromImage(mask));
    icon->setAlignment(Qt::AlignTop);
    return icon;
}

} // namespace

SaveDialog::SaveDialog(const Desktop::SaveQuestion &question, QWidget *parent)
    : QDialog(parent)
    , name_(new QLineEdit(question.name))
    , category_(new QComboBox)
{
    setWindowTitle(QStringLiteral("保存这节课"));
    setWindowModality(Qt::WindowModal);
    setAttribute(Qt::WA_DeleteOnClose);

    auto *message = new QLabel(QStringLiteral("保存这节课"));
    QFont bold = message->font();
    bold.setPixelSize(15);
    bold.setWeight(QFont::DemiBold);
    message->setFont(bold);
    auto *info = new QLabel(question.info);
    info->setTextFormat(Qt::PlainText);
    info->setWordWrap(true);

    name_->setPlaceholderText(QStringLiteral("名字"));
    name_->setFixedWidth(240);
    category_->setEditable(true);
    category_->addItems(question.categories);
    category_->setCurrentText(question.category);
    category_->lineEdit()->setPlaceholderText(QStringLiteral("分类（比如课程名，可以不填）"));
    category_->completer()->setCompletionMode(QCompleter::InlineCompletion);
    category_->setFixedWidth(240);
    auto *fields = new QFormLayout;
    fields->setLabelAlignment(Qt::AlignRight);
    fields->setVerticalSpacing(8);
    fields->addRow(QStringLiteral("名字"), name_);
    fields->addRow(QStringLiteral("分类"), category_);

    auto *buttons = new QDialogButtonBox;
    QPushButton *save = buttons->addButton(QStringLiteral("保存"), QDialogButtonBox::AcceptRole);
    QPushButton *discard = buttons->addButton(QStringLiteral("不保存"), QDialogButtonBox::DestructiveRole);
    save->setDefault(true);
    connect(save, &QPushButton::clicked, this, [this] { answer(true); });
    connect(discard, &QPushButton::clicked, this, [this] { answer(false); });

    auto *text = new QVBoxLayout;
    text->setSpacing(8);
    text->addWidget(message);
    text->addWidget(info);
    text->addLayout(fields);
    auto *body = new QHBoxLayout;
    body->setSpacing(16);
    body->addWidget(waveform(palette()));
    body->addLayout(text, 1);
    auto *column = new QVBoxLayout(this);
    column->setContentsMargins(20, 20, 20, 16);
    column->setSpacing(16);
    column->addLayout(body);
    column->addWidget(buttons);
    name_->setFocus();
}

void SaveDialog::answer(bool save)
{
    if (done_)
        return;
    done_ = true;
    const Desktop::SaveAnswer result{save, name_->text(), category_->currentText()};
    save ? accept() : QDialog::reject();
    answered(result);
}

void SaveDialog::reject()
{
    // Escape or the window's close button: the class is not thrown away without the second
    // question, so this counts as "不保存", which asks it.
    answer(false);
}
