// SAPI 5 XML into fragments with state, as SAPI's own parser does it for an engine.
//
//   <volume level="80">       <rate speed="+5" absspeed="-2">    <pitch middle="+5" absmiddle="3" range absrange>
//   <lang langid="409">       <voice required="..." optional>    these five may be empty: then they hold up to the end
//                                                                of the element around them
//   <emph>  <spell>  <context id="date_mdy">  <partofsp part="noun">  <pron sym="h eh l ow">
//   <silence msec="500"/>     <bookmark mark="name"/>            always empty
//   <p>  <s>  <sent>  <sect>  <section>                          a section fragment where they begin
//   <sapi>                                                       nothing of its own
//
// Names of tags and attributes have no case. Relative values (speed, middle, range) add to those around them, absolute
// ones replace them, and every sum stays within -10 to 10. Every other tag becomes an unknown-tag fragment with the
// tag as it is written. A document needs no root element. Comments, processing instructions and the document type are
// passed over; CDATA sections are text; the five entities of XML and numeric ones are known.
//
// Offsets count UTF-16 units of the text as given. Since an offset belongs to a fragment's first unit only, a fragment
// ends behind each entity. When the last text ends with one, an empty fragment at the text's end follows, which tells
// the engine where the text ends.
//
// Not accepted, with the place in the message: tags that are not closed, closed in the wrong order or never opened,
// attributes without quotes or given twice, a missing or malformed value of the tags above, '&' and '<' as text,
// unknown entities, content in an element that has to be empty.
#ifndef NELVA_TOOLS_HOST_SAPI_XML_H
#define NELVA_TOOLS_HOST_SAPI_XML_H

#include <string>

#include "tools/host/fragments.h"

namespace host {

// `name` stands for the text in messages. Throws HostError.
SpeechInput input_from_sapi_xml(WideString source, LANGID language, const std::string& name);

}  // namespace host

#endif
