#include "dbus_values.h"

#include <QDBusVariant>

QVariant unwrap(QVariant value)
{
    while (value.typeId() == qMetaTypeId<QDBusVariant>())
        value = value.value<QDBusVariant>().variant();
    return value;
}
