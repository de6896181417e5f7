#include "QtPrinters.h"
#include "account/PixelCatChoice.h"

#include <QSettings>

#include <gtest/gtest.h>

using namespace Qt::StringLiterals;

TEST(PixelCatChoice, IndexComesFromAStoredChoiceInRangeElseFromTheLowerCasedAddress)
{
    EXPECT_EQ(PixelCatChoice::index(std::nullopt), 0);
    EXPECT_EQ(PixelCatChoice::index(u""_s), 0);

    // (31 × 7 + 97) mod 26 for "a"; "é" counts once as U+00E9, not as its two UTF-8 bytes (19).
    const struct
    {
        QString email;
        int expected;
    } hashed[] = {{u"a"_s, 2}, {u"A"_s, 2}, {u"ab"_s, 4}, {u"é"_s, 8}, {u"É"_s, 8}};
    for (const auto &[email, expected] : hashed)
        EXPECT_EQ(PixelCatChoice::index(email), expected) << email;

    const QString address = u"Lin.Mei@Example.com"_s;
    const int first = PixelCatChoice::index(address);
    EXPECT_EQ(PixelCatChoice::index(address.toLower()), first);
    for (const int outOfRange : {PixelCatChoice::catalogueSize, -1}) {
        PixelCatChoice::choose(outOfRange, address);
        EXPECT_EQ(PixelCatChoice::index(address), first) << outOfRange;
    }
    PixelCatChoice::choose(25, address.toUpper());
    EXPECT_EQ(PixelCatChoice::index(address), 25);
    EXPECT_EQ(QSettings().value(u"avatar.cat.lin.mei@example.com"_s).toInt(), 25);
}
