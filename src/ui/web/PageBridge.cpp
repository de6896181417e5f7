#include "ui/web/PageBridge.h"

PageBridge::PageBridge(QObject *parent)
    : QObject(parent)
{
}

void PageBridge::post(const QString &name, const QJsonValue &body)
{
    onMessage(name, body);
}
