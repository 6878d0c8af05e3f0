// SPDX-License-Identifier: GPL-3.0-or-later

#include "extension/CustomActionsFile.h"

#include <QXmlStreamReader>
#include <QXmlStreamWriter>

namespace quillhaven {

namespace {

const QString actionsElement = QStringLiteral("actions");
const QString actionElement = QStringLiteral("action");
const QString nameElement = QStringLiteral("name");
const QString submenuElement = QStringLiteral("submenu");
const QString uniqueIdElement = QStringLiteral("unique-id");
const QString commandElement = QStringLiteral("command");

CustomAction readAction(QXmlStreamReader &reader)
{
    CustomAction action;
    while (reader.readNextStartElement()) {
        const QString element = reader.name().toString();
        const bool isTranslated = !reader.attributes().isEmpty(); // names and descriptions in other languages
        const QString text = reader.readElementText(QXmlStreamReader::IncludeChildElements);
        if (isTranslated) {
            continue;
        }
        if (element == nameElement) {
            action.name = text;
        } else if (element == submenuElement) {
            action.submenu = text;
        } else if (element == uniqueIdElement) {
            action.uniqueId = text;
        } else if (element == commandElement) {
            action.command = text;
        }
    }
    return action;
}

/// For every kind of file and folder. The line end after it is removed with it.
void writeAction(QXmlStreamWriter &writer, const CustomAction &action)
{
    const auto indent = [&writer] { writer.writeCharacters(QStringLiteral("\n\t")); };
    const auto writeText = [&](const QString &element, const QString &text) {
        indent();
        writer.writeTextElement(element, text);
    };
    writer.writeStartElement(actionElement);
    writeText(QStringLiteral("icon"), QStringLiteral("security-high"));
    writeText(nameElement, action.name);
    writeText(submenuElement, action.submenu);
    writeText(uniqueIdElement, action.uniqueId);
    writeText(commandElement, action.command);
    writeText(QStringLiteral("patterns"), QStringLiteral("*"));
    for (const QLatin1String kind :
         {QLatin1String("directories"), QLatin1String("audio-files"), QLatin1String("image-files"),
          QLatin1String("other-files"), QLatin1String("text-files"), QLatin1String("video-files")}) {
        indent();
        writer.writeEmptyElement(kind);
    }
    writer.writeCharacters(QStringLiteral("\n"));
    writer.writeEndElement();
    writer.writeCharacters(QStringLiteral("\n"));
}

/// Passes over the rest of an action and the space after it.
void skipAction(QXmlStreamReader &reader)
{
    reader.skipCurrentElement();
    reader.readNext();
    if (reader.isWhitespace()) {
        reader.readNext();
    }
}

/// Writes the current token; without the space that the reader leaves at the document type, and without a line end
/// after the document.
void writeToken(QXmlStreamWriter &writer, const QXmlStreamReader &reader)
{
    if (reader.isDTD()) {
        writer.writeDTD(reader.text().trimmed().toString());
    } else if (!reader.isEndDocument()) {
        writer.writeCurrentToken(reader);
    }
}

} // namespace

std::optional<QList<CustomAction>> customActions(const QByteArray &document)
{
    QXmlStreamReader reader(document);
    if (!reader.readNextStartElement() || reader.name() != actionsElement) {
        return std::nullopt;
    }
    QList<CustomAction> actions;
    while (reader.readNextStartElement()) {
        if (reader.name() == actionElement) {
            actions.append(readAction(reader));
        } else {
            reader.skipCurrentElement();
        }
    }
    while (!reader.atEnd()) {
        reader.readNext();
    }
    return reader.hasError() ? std::nullopt : std::optional(actions);
}

QByteArray emptyCustomActions()
{
    return QByteArrayLiteral("<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n<actions>\n</actions>\n");
}

QByteArray withCustomActions(const QByteArray &document, const QString &prefix, const QList<CustomAction> &added)
{
    const QList<CustomAction> existing = customActions(document).value_or(QList<CustomAction>());
    QByteArray result;
    QXmlStreamWriter writer(&result);
    QXmlStreamReader reader(document);
    qsizetype index = 0;
    int depth = 0;
    reader.readNext();
    while (!reader.atEnd()) {
        if (reader.isStartElement() && depth == 1 && reader.name() == actionElement &&
            existing.value(index++).uniqueId.startsWith(prefix)) {
            skipAction(reader);
            continue;
        }
        depth += reader.isStartElement() ? 1 : reader.isEndElement() ? -1 : 0;
        if (reader.isEndElement() && depth == 0) {
            for (const CustomAction &action : added) {
                writeAction(writer, action);
            }
        }
        writeToken(writer, reader);
        if (depth == 0 && !reader.isEndDocument()) {
            writer.writeCharacters(QStringLiteral("\n"));
        }
        reader.readNext();
    }
    return result;
}

} // namespace quillhaven
