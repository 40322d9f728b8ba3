#include "shuffle_store.h"

ShuffleStore::DownloadFailed::DownloadFailed(QString description)
    : m_description(std::move(description))
{
}

ShuffleStore::ShuffleStore(QObject *parent)
    : QObject(parent)
{
}
