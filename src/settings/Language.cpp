#include "settings/Language.h"

const QList<Language> &Language::all()
{
    static const QList<Language> table = {
        {QStringLiteral("Korean"), QStringLiteral("韩语"), QStringLiteral("ko-KR"), QStringLiteral("[가-힣]")},
        {QStringLiteral("Simplified Chinese"), QStringLiteral("简体中文"), QStringLiteral("zh-Hans"),
         QStringLiteral("[一-龥]")},
        {QStringLiteral("English"), QStringLiteral("英语"), QStringLiteral("en-US"), QStringLiteral("[A-Za-z]")},
        {QStringLiteral("Japanese"), QStringLiteral("日语"), QStringLiteral("ja-JP"),
         QStringLiteral("[ぁ-んァ-ヶ一-龥]")},
        {QStringLiteral("French"), QStringLiteral("法语"), QStringLiteral("fr-FR"), QStringLiteral("[A-Za-zÀ-ÿ]")},
        {QStringLiteral("German"), QStringLiteral("德语"), QStringLiteral("de-DE"),
         QStringLiteral("[A-Za-zÄÖÜäöüß]")},
    };
    return table;
}

const Language &Language::find(const QString &id)
{
    const QString wanted = id == u"Chinese" ? QStringLiteral("Simplified Chinese") : id;
    for (const Language &language : all()) {
        if (language.id == wanted)
            return language;
    }
    return all().front();
}
