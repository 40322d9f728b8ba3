#pragma once

#include <QAbstractListModel>
#include <QPointer>
#include <QtQmlIntegration>
#include <algorithm>

// A list model for the views: its row count, every row's roles by name, and the row the view
// has chosen by its key, each as a property that follows every change of the rows.
class RowListModel : public QAbstractListModel {
    Q_OBJECT
    QML_ANONYMOUS
    Q_PROPERTY(int count READ count NOTIFY countChanged)
    Q_PROPERTY(QVariantList rows READ rows NOTIFY rowsChanged)
    Q_PROPERTY(QString currentKey READ currentKey WRITE setCurrentKey NOTIFY currentChanged)
    // The roles of the row whose key is currentKey; empty when there is none.
    Q_PROPERTY(QVariantMap current READ current NOTIFY currentChanged)

public:
    explicit RowListModel(QObject *parent = nullptr);

    [[nodiscard]] int count() const { return rowCount(); }
    [[nodiscard]] QVariantList rows() const;
    [[nodiscard]] QString currentKey() const { return m_currentKey; }
    void setCurrentKey(const QString &key);
    [[nodiscard]] QVariantMap current() const;

    // The row with this key (a pack's slug, a display's id, a colourway's key); -1 for none.
    Q_INVOKABLE [[nodiscard]] virtual int indexOf(const QString &key) const = 0;

Q_SIGNALS:
    void countChanged();
    void rowsChanged();
    void currentChanged();

protected:
    // Swaps one object the rows come from: stops listening to the old one and has listen()
    // connect to the new one. False when it is the same object.
    template<typename T, typename Listen>
    bool replaceSource(QPointer<T> &source, T *value, Listen listen)
    {
        if (source == value)
            return false;
        if (source)
            disconnect(source, nullptr, this, nullptr);
        source = value;
        if (value)
            listen(value);
        return true;
    }

    // Takes the rows a reload made; the views are told only when they differ from the shown ones.
    template<typename Row> void replaceRows(QList<Row> &shown, QList<Row> made)
    {
        if (made == shown)
            return;
        beginResetModel();
        shown = std::move(made);
        endResetModel();
    }

    // The first row whose key is key, or -1.
    template<typename Row, typename KeyOf>
    [[nodiscard]] static int find(const QList<Row> &rows, const QString &key, KeyOf keyOf)
    {
        const auto found = std::find_if(rows.cbegin(), rows.cend(),
                                        [&](const Row &row) { return keyOf(row) == key; });
        return found == rows.cend() ? -1 : int(found - rows.cbegin());
    }

private:
    void changed();
    [[nodiscard]] QVariantMap roles(int row) const;

    int m_count = 0;
    QString m_currentKey;
};
