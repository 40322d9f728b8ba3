#include "libheif_decoder.h"

#include <QObject>
#include <QtPlugin>

// The root object of the HEIC module, which HeicModule loads at the first HEIC file.
class HeicPlugin
    : public QObject
    , public LibheifDecoder {
    Q_OBJECT
    Q_PLUGIN_METADATA(IID QUENNET_HEIC_DECODER_IID)
    Q_INTERFACES(HeicDecoder)
};

#include "heic_plugin.moc"
