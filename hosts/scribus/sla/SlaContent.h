#pragma once

#include "hosts/scribus/sla/DocumentInfo.h"

#include <QByteArray>

class SlaScanner;

// What a document's XML says, in the present form that Scribus writes.
namespace SlaContent
{
// Takes the page numbers, links, colours, profiles, bleed, title and the yes/no facts from the text of a
// document that stands in the folder. The pages are there already, without numbers.
void Read(const QByteArray& text, const QString& folder, DocumentInfo& info);

// The colour profiles that a document of any form names, one as often as it is named. Scribus writes others
// into the present form in the place of those that it lacks.
QStringList FindProfiles(const QByteArray& text);

// The attributes of an element that name a file which is linked, not embedded; none for most elements.
std::vector<std::string_view> GetLinkAttributes(const SlaScanner& element);

// The attributes of an element that name a colour profile in use.
std::vector<std::string_view> GetProfileAttributes(const SlaScanner& element);
}  // namespace SlaContent
