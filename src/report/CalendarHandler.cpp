#include "report/CalendarHandler.h"

namespace CalendarHandler {

void receive(const QVariant &body, const std::function<void(const QString &text)> &run)
{
    if (body.typeId() == QMetaType::QString)
        run(body.toString());
}

} // namespace CalendarHandler
