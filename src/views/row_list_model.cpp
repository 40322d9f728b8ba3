#include "row_list_model.h"

RowListModel::RowListModel(QObject *parent)
    : QAbstractListModel(parent)
{
    connect(this, &QAbstractItemModel::modelReset, this, &RowListModel::changed);
    connect(this, &QAbstractItemModel::dataChanged, this, &RowListModel::changed);
    connect(this, &QAbstractItemModel::rowsInserted, this, &RowListModel::changed);
    connect(this, &QAbstractItemModel::rowsRemoved, this, &RowListModel::changed);
}

void RowListModel::changed()
{
    Q_EMIT rowsChanged();
    Q_EMIT currentChanged();
    if (const int rows = rowCount(); rows != m_count) {
        m_count = rows;
        Q_EMIT countChanged();
    }
}

QVariantMap RowListModel::roles(int row) const
{
    QVariantMap values;
    const QModelIndex at = index(row);
    const auto names = roleNames();
    for (auto it = names.cbegin(); it != names.cend(); ++it)
        values.insert(QString::fromUtf8(it.value()), data(at, it.key()));
    return values;
}

QVariantList RowListModel::rows() const
{
    QVariantList all;
    for (int row = 0; row < rowCount(); ++row)
        all.append(roles(row));
    return all;
}

void RowListModel::setCurrentKey(const QString &key)
{
    if (m_currentKey == key)
        return;
    m_currentKey = key;
    Q_EMIT currentChanged();
}

QVariantMap RowListModel::current() const
{
    const int row = indexOf(m_currentKey);
    return row >= 0 ? roles(row) : QVariantMap();
}
