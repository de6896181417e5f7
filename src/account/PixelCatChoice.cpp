#include "account/PixelCatChoice.h"

#include "settings/UserDefaults.h"

#include <QSettings>

namespace PixelCatChoice {

namespace {

QString keyFor(const QString &email)
{
    return QString::fromLatin1(UserDefaults::avatarCatPrefix) + email.toLower();
}

int hashed(const QString &lowered)
{
    int h = 7;
    for (const char32_t scalar : lowered.toUcs4())
        h = int((31 * qint64(h) + scalar) % 65536);
    return h % catalogueSize;
}

} // namespace

int index(const std::optional<QString> &email)
{
    if (!email || email->isEmpty())
        return 0;
    bool isInteger = false;
    const int stored = QSettings().value(keyFor(*email)).toInt(&isInteger);
    if (isInteger && stored >= 0 && stored < catalogueSize)
        return stored;
    return hashed(email->toLower());
}

void choose(int index, const QString &email)
{
    QSettings().setValue(keyFor(email), index);
}

} // namespace PixelCatChoice
