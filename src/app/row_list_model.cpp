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
    ++m_revision;
    Q_EMIT revisionChanged();
    if (const int rows = rowCount(); rows != m_count) {
        m_count = rows;
        Q_EMIT countChanged();
    }
}

QVariant RowListModel::get(int row, const QString &role) const
{
    const QByteArray name = role.toUtf8();
    const auto roles = roleNames();
    for (auto it = roles.cbegin(); it != roles.cend(); ++it) {
        if (it.value() == name)
            return data(index(row), it.key());
    }
    return {};
}
