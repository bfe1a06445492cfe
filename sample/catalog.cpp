#include "sample/catalog.h"

#include <array>

namespace tessellar::sample {

namespace {

using enum Kind;
using B = Backdrop;
using S = IconShape;

struct Tone {
    QRgb top;
    QRgb bottom;
};

constexpr Tone sky{0x6cc3ff, 0x1d7bf2};
constexpr Tone ocean{0x3fa9f5, 0x0b4fa8};
constexpr Tone indigo{0x7c83ff, 0x3b34c9};
constexpr Tone violet{0xb18cff, 0x6633d6};
constexpr Tone magenta{0xff7ac6, 0xc2279a};
constexpr Tone rose{0xff8fa8, 0xe23a66};
constexpr Tone scarlet{0xff7066, 0xd3232f};
constexpr Tone orange{0xffa94d, 0xf0642a};
constexpr Tone amber{0xffd868, 0xf5a317};
constexpr Tone lime{0xc9ec5f, 0x6cb52d};
constexpr Tone green{0x6ee08a, 0x1f9e55};
constexpr Tone forest{0x4f9f6f, 0x1c5b41};
constexpr Tone teal{0x5fe0cf, 0x0f8f92};
constexpr Tone cyan{0x6fe3f2, 0x1292c4};
constexpr Tone slate{0x8a9bb5, 0x48566f};
constexpr Tone graphite{0x525a6b, 0x20242e};
constexpr Tone night{0x353b66, 0x10122b};
constexpr Tone snow{0xffffff, 0xdfe5ee};
constexpr Tone cream{0xfff9ea, 0xf2dfba};
constexpr Tone sand{0xf3dcae, 0xcfa05c};
constexpr Tone cocoa{0xa9745a, 0x5a3426};
constexpr Tone plum{0x8a4f8f, 0x3f1f52};
constexpr Tone mint{0xd8fbe8, 0x8fe3c0};
constexpr Tone blush{0xffe9ec, 0xffbcc9};
constexpr Tone brick{0xd9785f, 0x8c352c};

constexpr QRgb white = 0xffffff;
constexpr QRgb gold = 0xffcb45;
constexpr QRgb ink = 0x2a3146;
constexpr QRgb blueInk = 0x2f6fe4;

constexpr IconDesign icon(const char* glyph, Tone tone, QRgb colour = white, QRgb accent = gold,
                          Backdrop backdrop = B::plain, IconShape shape = S::tile) {
    return {glyph, tone.top, tone.bottom, colour, accent, backdrop, shape};
}

constexpr std::array allVendors{
    Vendor{"Harbor & Pine Software LLC", "K4P7T2M9QX", "com.harborpine",
           "Copyright © 2014–%1 Harbor & Pine Software LLC. All rights reserved."},
    Vendor{"Lindenkraft GmbH", "8LK3VB6W2N", "de.lindenkraft",
           "Copyright © %1 Lindenkraft GmbH.\nAlle Rechte vorbehalten."},
    Vendor{"Osprey Street Studio Inc.", "R2D9OSP5ST", "studio.ospreystreet",
           "© %1 Osprey Street Studio Inc."},
    Vendor{"Tøyen Verksted AS", "TV77QK1M4E", "no.toyenverksted",
           "© 2019-%1 Tøyen Verksted AS — MIT OR Apache-2.0"},
    Vendor{"Marigold and Moss Ltd", "M4RG0LDM55", "co.marigoldmoss",
           "Copyright (c) %1 Marigold and Moss Ltd. All rights reserved."},
    Vendor{"Kawabe Works K.K.", "KW5J8Y3Z6A", "jp.kawabeworks",
           "Copyright © %1 Kawabe Works K.K. All Rights Reserved."},
    Vendor{"Petra Albrecht", "PA6N2C8H1U", "me.petraalbrecht",
           "Copyright © %1 Petra Albrecht. Licensed under the GNU GPL."},
    Vendor{"Nine Nettles Games Oy", "9NETTLES42", "games.ninenettles", "©%1 Nine Nettles Games Oy"},
    Vendor{"Rivière Rouge SARL", "RR3B6F9T2V", "fr.riviererouge",
           "2.4, Copyright © 2008-%1, Rivière Rouge SARL."},
    Vendor{"Grünspan Verlag eG", "GV4X7S1L8P", "eu.gruenspan", "MIT License"},
};

constexpr std::array entries{
    // What comes with the Mac.
    CatalogEntry{"Calculator", system, -1, "com.apple.calculator", "utilities",
                 icon("calculator", orange, white, 0xff9a2e, B::glow)},
    CatalogEntry{"Calendar", system, -1, "com.apple.iCal", "productivity",
                 icon("calendar", cream, white, 0xf2503c)},
    CatalogEntry{"Camera", system, -1, "com.apple.PhotoBooth", "photography",
                 icon("camera", rose, white, 0x6fb7ff, B::rings)},
    CatalogEntry{"Chess", system, -1, "com.apple.Chess", "board-games",
                 icon("knight", cocoa, 0xfff3dd, 0x6b4028, B::diagonal)},
    CatalogEntry{"Clock", system, -1, "com.apple.clock", "utilities",
                 icon("clock", graphite, white, 0xff8a1f)},
    CatalogEntry{"Contacts", system, -1, "com.apple.AddressBook", "productivity",
                 icon("person", sand, white, 0x9a7a5a)},
    CatalogEntry{"Dictionary", system, -1, "com.apple.Dictionary", "reference",
                 icon("book", scarlet, white, 0xd9a5a0)},
    CatalogEntry{"Fonts", system, -1, "com.apple.FontBook", "graphics-design",
                 icon("letterA", snow, ink, 0xff6b3d)},
    CatalogEntry{"Home", system, -1, "com.apple.Home", "lifestyle",
                 icon("house", snow, 0xffb648, 0xff8a2a)},
    CatalogEntry{"Mail", system, -1, "com.apple.mail", "productivity",
                 icon("envelope", sky, white, 0x9fc6f5)},
    CatalogEntry{"Maps", system, -1, "com.apple.Maps", "navigation",
                 icon("map", green, white, 0xff4f47, B::grid)},
    CatalogEntry{"Messages", system, -1, "com.apple.MobileSMS", "social-networking",
                 icon("bubble", green, white, 0x63c97e)},
    CatalogEntry{"Music", system, -1, "com.apple.Music", "music", icon("note", rose, white, white)},
    CatalogEntry{"News", system, -1, "com.apple.news", "news",
                 icon("newspaper", scarlet, white, 0xe23a4e)},
    CatalogEntry{"Notes", system, -1, "com.apple.Notes", "productivity",
                 icon("lines", cream, 0xb8ad96, 0xffc93c, B::header)},
    CatalogEntry{"Pictures", system, -1, "com.apple.Photos", "photography",
                 icon("mountains", cyan, white, 0x4f9fd0, B::glow)},
    CatalogEntry{"Reminders", system, -1, "com.apple.reminders", "productivity",
                 icon("checklist", snow, 0xc4ccd9, blueInk)},
    CatalogEntry{"Stocks", system, -1, "com.apple.stocks", "finance",
                 icon("stocks", graphite, 0x59e08a, white, B::grid)},
    CatalogEntry{"System Settings", system, -1, "com.apple.systempreferences", "",
                 icon("gear", slate, 0xf3f6fb, 0x8a9bb5)},
    CatalogEntry{"Text Editor", system, -1, "com.apple.TextEdit", "productivity",
                 icon("page", slate, white, 0xffb02e, B::diagonal)},
    CatalogEntry{"Tips", system, -1, "com.apple.tips", "reference",
                 icon("bulb", cream, white, 0xffd23f, B::rays)},
    CatalogEntry{"Translator", system, -1, "com.apple.Translate", "reference",
                 icon("translate", cyan, white, 0x2f6fe4)},
    CatalogEntry{"Viewer", system, -1, "com.apple.Preview", "productivity",
                 icon("magnifier", snow, 0x8fa0b8, 0x4f6d94)},
    CatalogEntry{"Voice Recorder", system, -1, "com.apple.VoiceMemos", "productivity",
                 icon("waveform", graphite, white, 0xff4f47)},
    CatalogEntry{"Weather", system, -1, "com.apple.weather", "weather",
                 icon("sunCloud", sky, white, gold)},
    CatalogEntry{"Activity", utility, -1, "com.apple.ActivityMonitor", "utilities",
                 icon("pulse", graphite, white, 0x59e08a, B::grid)},
    CatalogEntry{"Color Meter", utility, -1, "com.apple.DigitalColorMeter", "utilities",
                 icon("dropper", snow, white, 0x3d8bff)},
    CatalogEntry{"Console", utility, -1, "com.apple.Console", "utilities",
                 icon("console", slate, white, gold)},
    CatalogEntry{"Disks", utility, -1, "com.apple.DiskUtility", "utilities",
                 icon("drive", slate, white, 0x45c96c, B::glow)},
    CatalogEntry{"Keys", utility, -1, "com.apple.keychainaccess", "utilities",
                 icon("key", slate, 0xffe08a, gold, B::rings)},
    CatalogEntry{"Network Tools", utility, -1, "com.apple.wifi.diagnostics", "utilities",
                 icon("antenna", ocean, white, 0x9fe0ff)},
    CatalogEntry{"Screenshot", utility, -1, "com.apple.screenshot.launcher", "utilities",
                 icon("frame", graphite, white, 0x8fd0ff)},
    CatalogEntry{"Terminal", utility, -1, "com.apple.Terminal", "utilities",
                 icon("prompt", graphite, white, 0x59e08a)},
    CatalogEntry{"Web Browser", cryptex, -1, "com.apple.WebBrowser", "productivity",
                 icon("globe", sky, white, 0x2f7fe8, B::glow, S::tile)},

    // Sparkle.
    CatalogEntry{"Quillbrook", sparkle, 0, "quillbrook", "productivity",
                 icon("nib", ocean, 0xf4f8ff, gold, B::waves)},
    CatalogEntry{"Fernlight", sparkle, 4, "fernlight", "photography",
                 icon("leaf", forest, 0xd9f7c8, 0x3f8a57, B::glow)},
    CatalogEntry{"Pebbletone", sparkle, 2, "pebbletone", "music",
                 icon("waveform", violet, white, 0xffd166, B::glow, S::circle)},
    CatalogEntry{"Moorhen", sparkle, 3, "moorhen", "developer-tools",
                 icon("branch", night, 0xcfd6ff, 0xff6b57)},
    CatalogEntry{"Glasswing", sparkle, 4, "glasswing", "graphics-design",
                 icon("moth", cyan, 0xf2fbff, 0xff9bc8, B::glow)},
    CatalogEntry{"Cobblestack", sparkle, 1, "cobblestack", "developer-tools",
                 icon("discs", slate, white, 0x2fb3a8, B::grid)},
    CatalogEntry{"Lanternlist", sparkle, 0, "lanternlist", "productivity",
                 icon("check", amber, white, 0xf0892a, B::rays)},
    CatalogEntry{"Sundial Bar", sparkle, 6, "sundial-bar", "utilities",
                 icon("sundial", plum, 0xffe9c9, 0xffa94d)},
    CatalogEntry{"Driftmark", sparkle, 8, "driftmark", "productivity",
                 icon("bookmark", scarlet, white, 0xff8a7a, B::waves)},
    CatalogEntry{"Windowsill", sparkle, 3, "windowsill", "utilities",
                 icon("windows", indigo, white, 0xb3c7ff)},

    // App Store.
    CatalogEntry{"Tidewater", store, 0, "tidewater", "weather", icon("waves", teal, white, 0xbff5ee)},
    CatalogEntry{"Pomona", store, 8, "pomona", "food-and-drink",
                 icon("pear", lime, 0xf4ffd2, 0x2f8a3f, B::rays)},
    CatalogEntry{"Larkspur", store, 2, "larkspur", "healthcare-fitness",
                 icon("heartbeat", snow, 0xff5577, white)},
    CatalogEntry{"Marblerun", store, 7, "marblerun", "puzzle-games",
                 icon("maze", violet, white, 0xffd166)},
    CatalogEntry{"Coinjar", store, 1, "coinjar", "finance",
                 icon("coins", green, white, gold, B::rings)},
    CatalogEntry{"Abacadia", store, 4, "abacadia", "education",
                 icon("blocks", cream, white, gold, B::dots)},
    CatalogEntry{"Starling Chat", store, 2, "starling", "social-networking",
                 icon("bubbles", magenta, white, 0xffb3de)},
    CatalogEntry{"Kitefall", store, 7, "kitefall", "arcade-games",
                 icon("kite", sky, 0xfff3b0, 0xff5f5f)},
    CatalogEntry{"Velodrome Days", store, 8, "velodrome", "sports",
                 icon("bicycle", lime, white, 0xf4503c)},
    CatalogEntry{"Papermoth", store, 9, "papermoth", "books", icon("moth", cocoa, 0xfbe9c8, 0xe0a458)},
    CatalogEntry{"Thimble", store, 4, "thimble", "lifestyle", icon("button", blush, white, 0xff7f9c)},
    CatalogEntry{"Polyhedra", store, 5, "polyhedra", "graphics-design",
                 icon("cube", graphite, 0xffd99a, 0xf08a3c)},

    // iPhone applications on the Mac.
    CatalogEntry{"Tramline", wrapped, 1, "tramline.ios", "travel", icon("tram", teal, white, 0xff5f57)},
    CatalogEntry{"Sprout Diary", wrapped, 4, "sproutdiary", "lifestyle",
                 icon("sprout", mint, white, 0xd9774b)},
    CatalogEntry{"Pocket Orchard", wrapped, 7, "pocketorchard", "simulation-games",
                 icon("tree", sky, white, 0xff5a50, B::waves)},
    CatalogEntry{"Sipwell", wrapped, 2, "sipwell", "healthcare-fitness",
                 icon("drop", cyan, white, 0x67c7e8)},
    CatalogEntry{"Nightjar Radio", wrapped, 8, "nightjar", "music",
                 icon("radio", night, 0xf3e9d8, 0xff8f4a)},
    CatalogEntry{"Ticket Pouch", wrapped, 0, "ticketpouch", "entertainment",
                 icon("ticket", indigo, white, 0xff8f4a)},
    CatalogEntry{"Snackmap", wrapped, 5, "snackmap", "food-and-drink",
                 icon("burger", scarlet, white, gold, B::rays)},

    // Homebrew casks.
    CatalogEntry{"Ferrule", homebrew, 3, "ferrule", "developer-tools",
                 icon("braces", forest, white, 0x9fe8b8)},
    CatalogEntry{"Portcullis", homebrew, 1, "portcullis", "utilities",
                 icon("gate", slate, 0xe9eef6, 0xb8c4d6)},
    CatalogEntry{"Kilnworks", homebrew, 6, "kilnworks", "graphics-design",
                 icon("printer3d", brick, white, 0xffc07a)},
    CatalogEntry{"Brasslamp", homebrew, 0, "brasslamp", "developer-tools",
                 icon("lamp", night, white, 0xf0b64c)},
    CatalogEntry{"Rookery", homebrew, 6, "rookery", "board-games",
                 icon("rook", plum, 0xf8eede, 0xc79a6b, B::diagonal)},
    CatalogEntry{"Mosaic Bench", homebrew, 9, "mosaicbench", "graphics-design",
                 icon("mosaic", graphite, 0xf4f6fb, 0x35c4b4)},
    CatalogEntry{"Gantry Desktop", homebrew, 3, "gantry", "productivity",
                 icon("kanban", ocean, white, gold)},
    CatalogEntry{"Hexfield", homebrew, 5, "hexfield", "developer-tools",
                 icon("hexagon", green, 0xecfff1, 0x1f9e55, B::plain, S::hexagon)},
    CatalogEntry{"Draughtsman", homebrew, 1, "draughtsman", "graphics-design",
                 icon("compasses", snow, 0x5b6b86, 0xf0642a, B::grid)},
    CatalogEntry{"Draughtsman Viewer", homebrew, 1, "draughtsman.viewer", "graphics-design",
                 icon("eye", snow, 0x5b6b86, 0xf0892a)},
    CatalogEntry{"Part Library", homebrew, 1, "draughtsman.parts", "graphics-design",
                 icon("crate", snow, 0xf0a04c, 0xd9813a)},
    CatalogEntry{"Saltmarsh", homebrew, 4, "saltmarsh", "music",
                 icon("headphones", teal, white, 0xfff0a8)},
    CatalogEntry{"Coppervine", homebrew, 8, "coppervine", "utilities",
                 icon("radar", night, 0x8fa3d9, 0x59e08a)},
    CatalogEntry{"Burrow", homebrew, 3, "burrow", "utilities", icon("paw", cocoa, 0xe8c79a, 0xc9965c)},

    // The other common updaters.
    CatalogEntry{"Paperwright", microsoft, 0, "com.microsoft.word", "productivity",
                 icon("letterP", ocean, white, gold, B::diagonal, S::paper)},
    CatalogEntry{"Gridwright", microsoft, 0, "com.microsoft.excel", "productivity",
                 icon("grid", forest, white, 0x1f9e55)},
    CatalogEntry{"Slidewright", microsoft, 0, "com.microsoft.powerpoint", "productivity",
                 icon("slides", brick, white, 0xf0804c)},
    CatalogEntry{"Wayfarer", keystone, 2, "wayfarer", "productivity",
                 icon("compass", cream, white, 0x8c97ab, B::plain, S::circle)},

    // Signed by their developers.
    CatalogEntry{"Anvil Code", developer, 3, "anvilcode", "developer-tools",
                 icon("anvil", graphite, 0xe6ebf4, 0xffa53c)},
    CatalogEntry{"Basalt Terminal", developer, 3, "basalt", "developer-tools",
                 icon("prompt", night, 0xbfc8ff, 0xff7ac6)},
    CatalogEntry{"Chalkboard", developer, 9, "chalkboard", "education",
                 icon("chalkboard", amber, white, 0xffe08a)},
    CatalogEntry{"Mandarin Mixer", developer, 5, "mandarinmixer", "music",
                 icon("sliders", orange, white, 0xffe9b0, B::glow)},
    CatalogEntry{"Carrier Post", developer, 0, "carrierpost", "productivity",
                 icon("paperPlane", indigo, white, 0xc9d2ff)},
    CatalogEntry{"Ember Meet", developer, 2, "embermeet", "business",
                 icon("video", orange, white, 0xff9a5c)},
    CatalogEntry{"Figwort Draw", developer, 4, "figwort", "graphics-design",
                 icon("pencil", mint, white, 0x2fb98a)},
    CatalogEntry{"Gable", developer, 1, "gable", "lifestyle", icon("house", brick, 0xfff1de, 0x6f3a2c)},
    CatalogEntry{"Halcyon Player", developer, 2, "halcyon", "video",
                 icon("play", plum, white, gold, B::rings)},
    CatalogEntry{"Isobar", developer, 8, "isobar", "weather", icon("gauge", graphite, 0xff6b5c, white)},
    CatalogEntry{"Ledgerline", developer, 1, "ledgerline", "finance",
                 icon("bars", forest, white, 0xffd166)},
    CatalogEntry{"Kestrel Remote", developer, 0, "kestrel", "business",
                 icon("monitor", snow, 0x8c97ab, 0x3d8bff)},
    CatalogEntry{"Loomfile", developer, 3, "loomfile", "utilities",
                 icon("cloudArrows", sky, white, 0x3d8bff)},
    CatalogEntry{"Mapleton", developer, 9, "mapleton", "reference",
                 icon("family", brick, 0xfff1de, gold)},
    CatalogEntry{"Nocturne", developer, 5, "nocturne", "music",
                 icon("moon", night, 0xf6f0d8, 0xf6f0d8, B::stars)},
    CatalogEntry{"Orrery", developer, 5, "orrery", "education",
                 icon("planet", indigo, 0xe6e2ff, 0xffb25c, B::stars)},
    CatalogEntry{"Passkeep", developer, 1, "passkeep", "utilities",
                 icon("lock", ocean, white, 0x2f6fe4, B::rings)},
    CatalogEntry{"Quarry", developer, 6, "quarry", "utilities",
                 icon("pie", graphite, 0x4fb4ff, 0x6ee08a)},
    CatalogEntry{"Raincheck", developer, 4, "raincheck", "productivity",
                 icon("umbrella", slate, white, 0xffd23f, B::dots)},
    CatalogEntry{"Sextant", developer, 0, "sextant", "navigation",
                 icon("anchor", ocean, white, gold, B::waves)},
    CatalogEntry{"Toast Timer", developer, 6, "toasttimer", "food-and-drink",
                 icon("hourglass", teal, white, 0xffb84c)},
    CatalogEntry{"Viaduct", developer, 3, "viaduct", "developer-tools",
                 icon("bridge", orange, white, 0xffe08a, B::horizon)},
    CatalogEntry{"Whistlestop", developer, 7, "whistlestop", "simulation-games",
                 icon("steamEngine", scarlet, cream.top, gold, B::rays)},
    CatalogEntry{"Xylophone Lab", developer, 4, "xylophone", "education",
                 icon("xylophone", snow, 0x8a5a3a, gold)},
    CatalogEntry{"Yarrow", developer, 8, "yarrow", "productivity", icon("nodes", violet, white, gold)},
    CatalogEntry{"Zephyr", developer, 6, "zephyr", "utilities", icon("fan", cyan, white, 0x1292c4)},
    CatalogEntry{"Beacon Push", developer, 2, "beacon", "developer-tools",
                 icon("lighthouse", night, white, 0xf4503c, B::stars)},
    CatalogEntry{"Kindling", developer, 8, "kindling", "business",
                 icon("flame", scarlet, 0xffd166, 0xff8a3c, B::glow)},
    CatalogEntry{"Meadow Planner", developer, 4, "meadow", "lifestyle",
                 icon("flower", lime, white, gold)},
    CatalogEntry{"Skyhook", developer, 7, "skyhook", "action-games",
                 icon("rocket", indigo, white, 0xff5f57, B::stars)},
    CatalogEntry{"Toadstool Tale", developer, 7, "toadstool", "adventure-games",
                 icon("mushroom", forest, white, 0xf4453c)},
    CatalogEntry{"Dragonfen", developer, 7, "dragonfen", "role-playing-games",
                 icon("dice", scarlet, white, 0x3a2b52)},
    CatalogEntry{"Solitaire Garden", developer, 7, "solitairegarden", "card-games",
                 icon("cards", green, white, 0xf4453c)},
    CatalogEntry{"Deepwater", adHoc, 6, "deepwater", "games",
                 icon("fish", ocean, 0xffa94d, white, B::waves)},
    CatalogEntry{"Pixel Haunt", adHoc, 6, "pixelhaunt", "arcade-games",
                 icon("ghost", night, 0x9fffe0, 0x5fd9ff, B::grid)},
    CatalogEntry{"Magpie Clips", developer, 0, "magpie", "utilities",
                 icon("clipboard", teal, white, 0x3d8bff)},
    CatalogEntry{"Snipjoy", developer, 2, "snipjoy", "photography",
                 icon("scissors", blush, 0x7a879d, 0xf0507a)},
    CatalogEntry{"Umber Paint", developer, 5, "umberpaint", "graphics-design",
                 icon("palette", plum, 0xf6ead2, gold, B::plain, S::tile)},
    CatalogEntry{"Whisker", developer, 5, "whisker", "entertainment",
                 icon("cat", amber, 0xfffaf0, 0xd9a05c)},
    CatalogEntry{"Molecula", developer, 9, "molecula", "education",
                 icon("atom", indigo, 0xcfd6ff, 0xff7ac6)},
    CatalogEntry{"Retort Lab", developer, 9, "retort", "education",
                 icon("flask", mint, white, 0x8a5cf0)},
    CatalogEntry{"Café Finder", developer, 8, "cafefinder", "food-and-drink",
                 icon("cup", cocoa, white, gold)},
    CatalogEntry{"Aerostat", developer, 7, "aerostat", "travel",
                 icon("balloon", sky, 0xfff1de, 0xf4503c, B::waves)},
    CatalogEntry{"Ivory Keys", developer, 5, "ivorykeys", "music",
                 icon("piano", rose, white, 0xf0507a)},

    // In the home's own folder.
    CatalogEntry{"Finch", user, 4, "finch", "social-networking",
                 icon("bird", cream, 0xff8a5c, 0xe05a3c)},
    CatalogEntry{"Scratchpad Beta", user, 6, "scratchpad", "productivity",
                 icon("brush", snow, white, 0x8a5cf0)},
    CatalogEntry{"Tinkerbot", user, 3, "tinkerbot", "developer-tools",
                 icon("robot", cyan, white, 0xff8f4a)},
    CatalogEntry{"Team Wiki", user, 2, "webapp.teamwiki", "",
                 icon("puzzle", violet, white, gold, B::plain, S::circle)},
};

} // namespace

std::span<const Vendor> vendors() { return allVendors; }
std::span<const CatalogEntry> catalog() { return entries; }

} // namespace tessellar::sample
