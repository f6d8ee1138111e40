// Prints a fuzzing dictionary: every element, attribute and keyword in the library's tables, in XML syntax, and some
// markup of XML itself.
#include "card/card.h"
#include "frame/frame.h"
#include "slot/slot.h"
#include "tools/words.h"
#include "vm/vm.h"

#include <dcm.h>

#include <cstdio>
#include <set>
#include <string>

namespace {

std::set<std::string> tokens;

void addWords(const dcm::Vocabulary &vocabulary)
{
    for (const std::string &word : dcmtool::wordsOf(vocabulary))
        tokens.insert(word);
}

void addContent(const dcm::Content &content)
{
    if (content.vocabulary != nullptr)
        addWords(*content.vocabulary);
}

void addElement(const std::string &name, const dcm::Element &element)
{
    tokens.insert("<" + name + ">");
    tokens.insert("</" + name + ">");
    addContent(element.content);
    for (size_t i = 0; i < element.attributeCount; i++) {
        tokens.insert(std::string(" ") + element.attributes[i].name + "=\"1\"");
        addContent(element.attributes[i].content);
    }
    for (size_t i = 0; i < element.childCount; i++)
        addElement(element.children[i].name, *element.children[i].element);
}

} // namespace

int main()
{
    addElement(dcm::kFrameName, dcm::kFrameElement);
    addElement(dcm::kSlotName, dcm::kSlotElement);
    addElement(dcm::kCardName, dcm::kCardElement);
    addElement(dcm::kVmName, dcm::kVmElement);
    addWords(dcm::kEttClassWords);
    addWords(dcm::kEttAttachWords);
    for (uint32_t ledType = 0; ledType < DCM_LED_TYPE_ROWS; ledType++)
        if (const dcm::Vocabulary *states = dcm::ledStateWords(ledType))
            addWords(*states);
    for (const char *token : {"<device>",
                              "</device>",
                              "<![CDATA[",
                              "]]>",
                              "<!--",
                              "-->",
                              "<?",
                              "?>",
                              "&amp;",
                              "&#49;",
                              "<!DOCTYPE device [<!ENTITY e \"1\">]>",
                              "&e;",
                              "led-",
                              "src-",
                              "0x",
                              "4294967295",
                              "1-4",
                              "1,3",
                              "255",
                              "256",
                              "65535",
                              "65536",
                              "#/#"})
        tokens.insert(token);

    for (const std::string &token : tokens) {
        std::putchar('"');
        for (const char character : token) {
            if (character == '"' || character == '\\')
                std::putchar('\\');
            std::putchar(character);
        }
        std::puts("\"");
    }
    return 0;
}
