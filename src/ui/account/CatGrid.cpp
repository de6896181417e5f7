#include "ui/account/CatGrid.h"

#include "ui/art/AvatarButton.h"
#include "ui/art/PixelCat.h"

#include <QGridLayout>

namespace {

constexpr int perRow = 7;

} // namespace

CatGrid::CatGrid(int buttonSize, int gap, QWidget *parent)
    : QWidget(parent)
{
    auto *grid = new QGridLayout(this);
    grid->setContentsMargins(0, 0, 0, 0);
    grid->setSpacing(gap);
    const int count = int(PixelCat::all().size());
    for (int i = 0; i < count; ++i) {
        auto *button = new AvatarButton(buttonSize, this);
        // A letter draws the cat at full strength; the dot itself isn't shown.
        button->setLetter(QStringLiteral("•"));
        button->setCat(i);
        connect(button, &AvatarButton::clicked, this, [this, i] { onPicked(i); });
        grid->addWidget(button, i / perRow, i % perRow);
        buttons_.append(button);
    }
}

void CatGrid::setChosen(int index)
{
    chosen_ = index;
    for (int i = 0; i < buttons_.size(); ++i)
        buttons_[i]->setRing(i == index);
}
