#pragma once

// Lets GoogleTest print Qt strings readably in failure messages and after `<<` on an assertion.

#include <QString>
#include <QStringList>

#include <ostream>

QT_BEGIN_NAMESPACE
inline void PrintTo(const QString &text, std::ostream *out)
{
    *out << '"' << text.toStdString() << '"';
}

inline std::ostream &operator<<(std::ostream &out, QStringView text)
{
    return out << text.toString().toStdString();
}
QT_END_NAMESPACE
