#include "settings/ProviderInfo.h"

const QList<ProviderInfo> &ProviderInfo::all()
{
    static const QList<ProviderInfo> rows{
        {QStringLiteral("claude"), QStringLiteral("Claude"),
         {{QStringLiteral("claude-opus-5-5"), QStringLiteral("Claude Opus 5.5 · 最聪明（推荐）")},
          {QStringLiteral("claude-sonnet-5-5"), QStringLiteral("Claude Sonnet 5.5 · 更快")},
          {QStringLiteral("claude-haiku-4-5"), QStringLiteral("Claude Haiku 4.5 · 最便宜")}},
         QStringLiteral("https://console.anthropic.com/settings/keys")},
        {QStringLiteral("openai"), QStringLiteral("ChatGPT"),
         {{QStringLiteral("gpt-5"), QStringLiteral("GPT-5")},
          {QStringLiteral("gpt-5-mini"), QStringLiteral("GPT-5 mini · 更便宜")}},
         QStringLiteral("https://platform.openai.com/api-keys")},
        {QStringLiteral("gemini"), QStringLiteral("Gemini"),
         {{QStringLiteral("gemini-2.5-pro"), QStringLiteral("Gemini 2.5 Pro")},
          {QStringLiteral("gemini-2.5-flash"), QStringLiteral("Gemini 2.5 Flash · 更便宜")}},
         QStringLiteral("https://aistudio.google.com/app/apikey")},
    };
    return rows;
}

const ProviderInfo &ProviderInfo::find(const QString &id)
{
    for (const ProviderInfo &row : all()) {
        if (row.id == id)
            return row;
    }
    return all().first();
}
