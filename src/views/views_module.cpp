// The views as a module of their own, which the application loads at its first view.
#include "quick_views.h"

#include <QObject>
#include <QQuickStyle>
#include <QtQml/QQmlExtensionPlugin>

Q_IMPORT_QML_PLUGIN(QuennetPlugin)

using namespace Qt::Literals::StringLiterals;

class QuickViewsFactory
    : public QObject
    , public ViewsFactory {
    Q_OBJECT
    Q_PLUGIN_METADATA(IID ViewsFactory_iid)
    Q_INTERFACES(ViewsFactory)

public:
    QuickViewsFactory()
    {
        // Debian's Qt has neither Breeze nor Adwaita for Qt Quick; Fusion in the desktop's
        // palette comes closest. A style the user chose wins.
        if (qEnvironmentVariableIsEmpty("QT_QUICK_CONTROLS_STYLE"))
            QQuickStyle::setStyle(u"Fusion"_s);
    }

    [[nodiscard]] Views *makeViews() override { return new QuickViews; }
};

#include "views_module.moc"
