#include "faults/Documents.h"

namespace faults {

const char* const kBook =
    "<?xml version = \"1.0\" encoding = \"UTF-8\" ?>\r\n<!-- of tea -->\r\n"
    "<!DOCTYPE book [\r\n"
    "<!ELEMENT book (title, (chapter | appendix)+, index?)>\n"
    "<!ELEMENT title (#PCDATA)>\n"
    "<!ELEMENT chapter (#PCDATA | em | note)*>\n"
    "<!ELEMENT appendix ANY>\n"
    "<!ELEMENT index EMPTY>\n"
    "<!ELEMENT em (#PCDATA)>\n"
    "<!ELEMENT note ((em, em) | (title, em*))>\n"
    "<!ATTLIST chapter id CDATA #REQUIRED language CDATA \"English, as it is spoken\">\n"
    "<!ENTITY tea \"a cup of tea in the afternoon\">\n"
    "]>\r\n"
    "<book>\r\n\t<title>All about &tea;, and what to have with it &amp; whom</title>\r\n"
    "<chapter id='1' language='&tea; as it is drunk in the morning'>Tea <em>or</em> cake\r\n\r\n"
    "<note><title>Note</title><em>with some emphasis, to be sure</em></note></chapter>"
    "<?what ever?><chapter id=\"2\"><![CDATA[<plain> & simple, but too long to be short]]>"
    "<!-- no --></chapter>"
    "<appendix><em>&#65;&#x42;</em><unknown a='1' c='3' b='2 and a half, or not &gt; "
    "so'/></appendix>"
    "<index/></book>\r\n<!-- the end -->\r\n<?really?>";

std::string manyAttributes() {
    std::string text = "<a";
    for (int i = 0; i < 140; ++i) text += " n" + std::to_string(i) + "='" + std::to_string(i) + "'";
    return text + "/>";
}

}  // namespace faults
