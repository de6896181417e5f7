#pragma once

// The fixed table of chat services a user can pick with their own key: the models offered for
// each and the page where a key is made. Plain constant data, readable from any thread.

#include <QList>
#include <QString>

struct ProviderInfo
{
    struct Model
    {
        QString id;
        QString label;
    };

    QString id;           // also the keychain account of the user's key
    QString displayName;
    QList<Model> models;
    QString keyURL;

    // Claude, ChatGPT, Gemini, in this order.
    static const QList<ProviderInfo> &all();
    // The row with this id; the Claude row for any other id, so a stale setting still works.
    static const ProviderInfo &find(const QString &id);
};
