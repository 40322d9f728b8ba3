#pragma once

#include <QByteArray>
#include <QVariantMap>

// Settings as INI text in QSettings' own notation ("group/key" keys, @ByteArray, @Variant,
// lists), so that QSettings, and with it every earlier build, reads each value back as it reads
// what it wrote itself. Values are as QSettings hands them out; an invalid one is "@Invalid()".
[[nodiscard]] QByteArray iniText(const QVariantMap &values);
