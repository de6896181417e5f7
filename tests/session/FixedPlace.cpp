// Every session test reads dates in one zone and one language, whatever the machine says: the
// zone (nine hours east of UTC, no daylight saving) shows that folder names are local time.

#include <QLocale>

#include <cstdlib>
#include <ctime>

namespace {

const bool fixed = [] {
    setenv("TZ", "Asia/Seoul", 1);
    tzset();
    QLocale::setDefault(QLocale(QLocale::English, QLocale::UnitedStates));
    return true;
}();

} // namespace
