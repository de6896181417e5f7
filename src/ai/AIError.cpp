#include "ai/AIError.h"

AIError AIError::missingKey(const QString &displayName)
{
    return AIError(Kind::MissingKey, displayName);
}

AIError::AIError(Kind kind, const QString &displayName)
    : kind_(kind)
    , displayName_(displayName)
    , what_("no API key stored for " + displayName.toUtf8())
{
}
