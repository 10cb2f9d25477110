/// Loads an XML file and ends: load_program <file>

#include <pugixml.hpp>

int main(int argc, char* argv[]) {
    pugi::xml_document document;
    return argc == 2 && document.load_file(argv[1], pugi::parse_pi | pugi::parse_ws_pcdata) ? 0 : 1;
}
