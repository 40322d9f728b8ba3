import QtQuick
import QtQuick.Controls
import QtQuick.Layouts
import Quennet

// Signing in: the code to approve in the browser, and each step of waiting for it.
ColumnLayout {
    id: sheet

    required property AppDelegate app
    readonly property int status: app.account.status

    spacing: 10

    Label {
        Layout.fillWidth: true
        horizontalAlignment: Text.AlignHCenter
        wrapMode: Text.WordWrap
        font.pointSize: FontSizes.subtitle
        font.weight: Font.DemiBold
        text: sheet.status === Account.Waiting ? qsTr("Approve this computer in your browser")
                                               : qsTr("Sign in to use the packs you've bought")
    }
    Label {
        Layout.fillWidth: true
        horizontalAlignment: Text.AlignHCenter
        wrapMode: Text.WordWrap
        visible: sheet.status === Account.SignedOut || sheet.status === Account.Requesting
        color: palette.placeholderText
        text: qsTr("With the email address you bought them with.")
    }

    // The code, large and spaced, so it can be compared at a glance.
    Frame {
        Layout.alignment: Qt.AlignHCenter
        Layout.topMargin: 4
        visible: sheet.status === Account.Waiting
        padding: 12
        Label {
            textFormat: Text.PlainText
            text: sheet.app.account.userCode
            font.family: "monospace"
            font.pointSize: FontSizes.code
            font.letterSpacing: 4
            font.weight: Font.DemiBold
        }
    }
    Label {
        Layout.fillWidth: true
        horizontalAlignment: Text.AlignHCenter
        wrapMode: Text.WordWrap
        visible: sheet.status === Account.Waiting
        color: palette.placeholderText
        text: qsTr("Check the code there matches this one.")
    }
    RowLayout {
        Layout.alignment: Qt.AlignHCenter
        visible: sheet.status === Account.Waiting || sheet.status === Account.Requesting
        BusyIndicator {
            running: parent.visible
            implicitWidth: 20
            implicitHeight: 20
        }
        Label {
            text: qsTr("Waiting for approval…")
            color: palette.placeholderText
        }
    }
    Label {
        Layout.fillWidth: true
        horizontalAlignment: Text.AlignHCenter
        wrapMode: Text.WordWrap
        visible: sheet.status === Account.Failed
        textFormat: Text.PlainText
        text: "\u26a0 " + sheet.app.account.message
    }

    RowLayout {
        Layout.alignment: Qt.AlignHCenter
        Layout.topMargin: 6
        spacing: 8
        Button {
            // The default button: Return signs in.
            visible: sheet.status === Account.SignedOut
            // Also when the sheet appears late, once the secret store has answered.
            focus: visible
            onVisibleChanged: if (visible) forceActiveFocus()
            text: qsTr("Sign In…")
            highlighted: true
            onClicked: sheet.app.session.signIn()
            Keys.onReturnPressed: sheet.app.session.signIn()
            Keys.onEnterPressed: sheet.app.session.signIn()
        }
        Button {
            visible: sheet.status === Account.Waiting
            text: qsTr("Open Browser Again")
            onClicked: sheet.app.session.openBrowserAgain()
        }
        Button {
            visible: sheet.status === Account.Failed
            text: qsTr("Start Again")
            highlighted: true
            onClicked: sheet.app.session.signIn()
        }
        Button {
            visible: sheet.status === Account.Waiting || sheet.status === Account.Requesting
                     || sheet.status === Account.Failed
            text: qsTr("Cancel")
            onClicked: sheet.app.session.cancelSignIn()
        }
    }
}
