#pragma once

#include <QAbstractListModel>
#include <QPointer>
#include <QtQmlIntegration>

// A list model for the views: its row count and a revision that counts every change, both as
// properties, and any role of a row by name, for bindings that read single rows.
class RowListModel : public QAbstractListModel {
    Q_OBJECT
    QML_ANONYMOUS
    Q_PROPERTY(int count READ count NOTIFY countChanged)
    Q_PROPERTY(int revision READ revision NOTIFY revisionChanged)

public:
    explicit RowListModel(QObject *parent = nullptr);

    [[nodiscard]] int count() const { return rowCount(); }
    [[nodiscard]] int revision() const { return m_revision; }

    Q_INVOKABLE [[nodiscard]] QVariant get(int row, const QString &role) const;

Q_SIGNALS:
    void countChanged();
    void revisionChanged();

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

private:
    void changed();

    int m_revision = 0;
    int m_count = 0;
};
