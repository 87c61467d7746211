"""Fails when a layer includes or links what it may not.

usage: check_layers.py ROOT QT_HEADERS [--link LAYER=LIBRARY,...]...
       check_layers.py --self-test QT_HEADERS
"""

import os
import re
import sys
import tempfile

INCLUDE = re.compile(r'^\s*#\s*include\s*([<"])([^>"]+)[>"]', re.M)
QT_MODULES = ("QtCore", "QtGui", "QtWidgets", "QtNetwork", "QtDBus", "QtSvg")
LOGIC = re.compile(r"^PindleMac/(APIClient|AppServices|AppSettingsStore|AppViewModel|Async|DateFormat"
                   r"|GlobalHotKeyManager|HelpDiagnosticsModel|Models|Text|WireFormat)[^/]*\.(h|cpp)$")
SHELL = re.compile(r"^PindleMac/(CommandLine|ContentView|FloatingPanel|HelpView|HelpWindow"
                   r"|PanelPlacement|PindleMacApp|Settings|StatusItemController)[^/]*\.(h|cpp)$"
                   r"|^PindleMac/views/.*\.(h|cpp)$")
COMPOSITION = re.compile(r"^PindleMac/(main\.cpp|Program\.(h|cpp))$")


def layer_of(path):
    if path.startswith("PindleConversion/"):
        return "PindleConversion"
    if path.startswith("PindleMac/platform/linux/eventstore/evolution/"):
        return "PindleEvolution"
    if path.startswith("PindleMac/platform/linux/"):
        return "PindleLinux"
    if path.startswith("PindleMac/platform/"):
        return "PindlePlatform"
    if LOGIC.match(path):
        return "PindleLogic"
    if SHELL.match(path):
        return "PindleShell"
    if COMPOSITION.match(path):
        return "composition"
    return None


# For each layer: the layers and Qt modules its files may include, other headers by pattern, and
# what its library may link.
RULES = {
    "PindlePlatform": dict(layers={"PindlePlatform"}, qt={"QtCore"}, other=None,
                           links={"Qt6::Core"}),
    "PindleLogic": dict(layers={"PindlePlatform", "PindleLogic"}, qt={"QtCore"},
                        other=r"^(QCoro.*|unicode/.*|nlohmann/.*)$",
                        links={"PindlePlatform", "Qt6::Core", "QCoro6::Core", "ICU::i18n",
                               "ICU::uc", "nlohmann_json::nlohmann_json"}),
    "PindleShell": dict(layers={"PindlePlatform", "PindleLogic", "PindleShell"},
                        qt={"QtCore", "QtGui", "QtWidgets", "QtSvg"}, other=None,
                        links={"PindleLogic", "Qt6::Widgets", "Qt6::Svg"}),
    "PindleLinux": dict(layers={"PindlePlatform", "PindleLinux"},
                        qt={"QtCore", "QtGui", "QtWidgets", "QtNetwork", "QtSvg"},
                        other=r"^(xcb/.*|xkbcommon/.*|systemd/sd-bus\.h|libical/.*|nlohmann/.*|sys/.*"
                              r"|unistd\.h|fcntl\.h|dirent\.h|poll\.h|pthread\.h)$",
                        links={"PindlePlatform", "Qt6::Gui", "Qt6::Widgets", "Qt6::Network", "Qt6::Svg",
                               "PkgConfig::XCB", "PkgConfig::SYSTEMD",
                               "PkgConfig::ICAL", "nlohmann_json::nlohmann_json",
                               "Threads::Threads"}),
    # A plugin: apart from the interface it implements, it knows nothing of the program.
    "PindleEvolution": dict(layers={"PindleEvolution"}, qt=set(),
                            other=r"^(libecal/libecal\.h"
                                  r"|PindleMac/platform/linux/eventstore/CalendarBackend\.h)$",
                            links={"PkgConfig::ECAL"}),
    "PindleConversion": dict(layers={"PindleConversion"}, qt=set(),
                             other=r"^(unicode/.*|nlohmann/.*|sys/random\.h|unistd\.h)$",
                             links={"ICU::i18n", "ICU::uc", "nlohmann_json::nlohmann_json"}),
}


def qt_module(header, qt_headers):
    """The Qt module a header belongs to; None for a header that is not Qt's."""
    if "/" in header and header.split("/")[0] in QT_MODULES:
        return header.split("/")[0]
    for module in QT_MODULES:
        if os.path.exists(os.path.join(qt_headers, module, header)):
            return module
    return "unknown" if re.match(r"^Q[A-Z]", header) else None


def check_include(layer, bracket, header, qt_headers):
    rule = RULES[layer]
    if rule["other"] and re.match(rule["other"], header):
        return None
    if bracket == '"':
        target = layer_of(header)
        return None if target in rule["layers"] else f"the layer {target}"
    module = qt_module(header, qt_headers)
    if module:
        return None if module in rule["qt"] else f"the Qt module {module}"
    # What is left of the angle brackets is the standard library, which has neither dot nor slash.
    return "a foreign library" if re.search(r"[./]", header) else None


def check_tree(root, qt_headers):
    faults, seen = [], 0
    for folder in ("PindleMac", "PindleConversion"):
        for base, _, names in os.walk(os.path.join(root, folder)):
            for name in sorted(names):
                if not name.endswith((".h", ".cpp")):
                    continue
                path = os.path.relpath(os.path.join(base, name), root)
                layer = layer_of(path)
                seen += 1
                if layer is None:
                    faults.append(f"{path}: belongs to no layer")
                elif layer != "composition":
                    with open(os.path.join(root, path), encoding="utf-8") as file:
                        for bracket, header in INCLUDE.findall(file.read()):
                            why = check_include(layer, bracket, header, qt_headers)
                            if why:
                                faults.append(f"{path}: {layer} may not include {header}, of {why}")
    return faults, seen


def check_links(links):
    faults = []
    for link in links:
        layer, libraries = link.split("=", 1)
        plain = re.sub(r"\$<LINK_ONLY:([^>]*)>", r"\1", libraries)
        for library in filter(None, plain.split(",")):
            if library not in RULES[layer]["links"]:
                faults.append(f"{layer} may not link {library}")
    return faults


def self_test(qt_headers):
    with tempfile.TemporaryDirectory() as root:
        bad = {"PindleMac/AppViewModel.cpp": "#include <QWidget>\n#include <QString>\n",
               "PindleMac/Models.h": '#include "PindleMac/platform/linux/x11/XConnection.h"\n',
               "PindleMac/ContentView.cpp": "#include <xcb/xcb.h>\n",
               "PindleMac/platform/linux/a/A.cpp": '#include "PindleMac/AppServices.h"\n',
               "PindleMac/platform/Clock.h": "#include <QGuiApplication>\n#include <chrono>\n",
               "PindleMac/platform/linux/a/B.cpp": "#include <libecal/libecal.h>\n",
               "PindleMac/platform/linux/eventstore/evolution/C.cpp":
                   '#include "PindleMac/platform/EventStore.h"\n',
               "PindleConversion/Convert.cpp": "#include <QString>\n",
               "PindleMac/Stray.cpp": ""}
        for path, text in bad.items():
            os.makedirs(os.path.dirname(os.path.join(root, path)), exist_ok=True)
            with open(os.path.join(root, path), "w", encoding="utf-8") as file:
                file.write(text)
        faults, _ = check_tree(root, qt_headers)
        unnoticed = [path for path in bad if not any(f.startswith(path + ":") for f in faults)]
        if unnoticed or len(faults) != len(bad):
            sys.exit(f"not noticed: {unnoticed}; noticed: {faults}")
    if len(check_links(["PindleLogic=Qt6::Widgets,Qt6::Core", "PindleLinux=PkgConfig::ECAL"])) != 2:
        sys.exit("a forbidden library was not noticed")


def main():
    if not os.path.exists(os.path.join(sys.argv[2], "QtCore", "QString")):
        sys.exit(f"there are no Qt headers in {sys.argv[2]}")
    if sys.argv[1] == "--self-test":
        self_test(sys.argv[2])
        return
    faults, seen = check_tree(sys.argv[1], sys.argv[2])
    faults += check_links(sys.argv[4::2])
    if seen < 50:
        faults.append(f"only {seen} files were looked at")
    for fault in faults:
        print(fault, file=sys.stderr)
    sys.exit(1 if faults else 0)


if __name__ == "__main__":
    main()
