#include "PindleConversion/lexicons/EnglishParts.h"

namespace pindle::conversion {

namespace {

using M = Meaning;

constexpr std::string_view kEastern = "America/New_York|America/Toronto|America/Detroit|America/"
                                      "Montreal|America/Indiana/Indianapolis|America/Panama|"
                                      "America/Jamaica";
constexpr std::string_view kCentral = "America/Chicago|America/Winnipeg|America/Mexico_City|"
                                      "America/Costa_Rica|America/Guatemala|America/Regina";
constexpr std::string_view kMountain = "America/Denver|America/Edmonton|America/Phoenix|"
                                       "America/Boise";
constexpr std::string_view kPacific = "America/Los_Angeles|America/Vancouver|America/Tijuana";
constexpr std::string_view kCentralEurope =
    "Europe/Berlin|Europe/Paris|Europe/Madrid|Europe/Rome|Europe/Amsterdam|Europe/Brussels|"
    "Europe/Vienna|Europe/Zurich|Europe/Warsaw|Europe/Prague|Europe/Stockholm|Europe/Oslo|"
    "Europe/Copenhagen|Europe/Budapest|Europe/Belgrade|Europe/Zagreb|Europe/Ljubljana|"
    "Europe/Bratislava|Europe/Luxembourg|Europe/Monaco|Europe/Malta|Europe/Tirane|Europe/Skopje|"
    "Europe/Sarajevo|Europe/Podgorica|Europe/Vaduz|Europe/Andorra|Europe/San_Marino|"
    "Europe/Vatican|Europe/Gibraltar|Europe/Busingen|Arctic/Longyearbyen|Africa/Ceuta";
constexpr std::string_view kEastEurope =
    "Europe/Athens|Europe/Helsinki|Europe/Kyiv|Europe/Kiev|Europe/Bucharest|Europe/Sofia|"
    "Europe/Riga|Europe/Tallinn|Europe/Vilnius|Asia/Nicosia|Europe/Mariehamn";
constexpr std::string_view kBritain =
    "Europe/London|Europe/Belfast|Europe/Jersey|Europe/Guernsey|Europe/Isle_of_Man";

constexpr Entry kZones[] = {
    {"utc|gmt", M::ZoneOffset, 0, "UTC"},
    {"z", M::ZoneAfterTime, 0, "UTC"},
    {"coordinated universal time|greenwich mean time|universal time", M::Zone, 0, "UTC"},
    {"eastern time|eastern standard time|eastern daylight time|us eastern|us/eastern", M::Zone, 0, kEastern},
    {"eastern time (us & canada)|eastern time (us and canada)", M::Zone, 0, kEastern},
    {"et|est|edt|eastern", M::ZoneAfterTime, 0, kEastern},
    {"central time|central standard time|central daylight time|us central|us/central", M::Zone, 0, kCentral},
    {"central time (us & canada)|central time (us and canada)", M::Zone, 0, kCentral},
    {"ct|cdt|central", M::ZoneAfterTime, 0, kCentral},
    {"cst", M::ZoneAfterTime, 0,
     "America/Chicago|America/Winnipeg|America/Mexico_City|America/Costa_Rica|America/Guatemala|"
     "America/Regina|America/Havana|Asia/Shanghai|Asia/Taipei|Asia/Macau|Asia/Urumqi|"
     "Asia/Hong_Kong"},
    {"mountain time|mountain standard time|mountain daylight time", M::Zone, 0, kMountain},
    {"mountain time (us & canada)|mountain time (us and canada)", M::Zone, 0, kMountain},
    {"mt|mst|mdt|mountain", M::ZoneAfterTime, 0, kMountain},
    {"arizona time|arizona", M::ZoneAfterTime, 0, "America/Phoenix"},
    {"pacific time|pacific standard time|pacific daylight time|us pacific|us/pacific", M::Zone, 0, kPacific},
    {"pacific time (us & canada)|pacific time (us and canada)", M::Zone, 0, kPacific},
    {"pt|pdt|pacific", M::ZoneAfterTime, 0, kPacific},
    {"pst", M::ZoneAfterTime, 0, "America/Los_Angeles|America/Vancouver|America/Tijuana|Asia/Manila"},
    {"alaska time|akst|akdt", M::ZoneAfterTime, 0, "America/Anchorage"},
    {"hawaii time|hst", M::ZoneAfterTime, 0, "Pacific/Honolulu"},
    {"atlantic time|atlantic standard time", M::Zone, 0, "America/Halifax|Atlantic/Bermuda|America/Puerto_Rico"},
    {"adt|ast", M::ZoneAfterTime, 1, "America/Halifax|Atlantic/Bermuda|America/Puerto_Rico|Asia/Riyadh|Asia/Kuwait|Asia/Qatar|Asia/Baghdad"},
    {"newfoundland time|nst|ndt", M::ZoneAfterTime, 0, "America/St_Johns"},
    {"brt|brasilia time|brasília time", M::ZoneAfterTime, 0, "America/Sao_Paulo"},
    {"art|argentina time", M::ZoneAfterTime, 1, "America/Argentina/Buenos_Aires"},
    {"bst", M::ZoneAfterTime, 0, "Europe/London|Europe/Belfast|Europe/Jersey|Europe/Guernsey|Europe/Isle_of_Man|Asia/Dhaka"},
    {"british summer time|uk time|british time", M::Zone, 0, kBritain},
    {"uk", M::ZoneAfterTime, 0, kBritain},
    {"irish time|irish standard time", M::Zone, 0, "Europe/Dublin"},
    {"ist", M::ZoneAfterTime, 0, "Asia/Kolkata|Asia/Calcutta|Europe/Dublin|Asia/Jerusalem|Asia/Tel_Aviv"},
    {"india time|indian standard time|india standard time", M::Zone, 0, "Asia/Kolkata|Asia/Calcutta"},
    {"israel time|idt", M::ZoneAfterTime, 0, "Asia/Jerusalem|Asia/Tel_Aviv"},
    {"western european time|wet|west", M::ZoneAfterTime, 1, "Europe/Lisbon|Atlantic/Canary|Atlantic/Madeira"},
    {"central european time|central european summer time|central european standard time", M::Zone, 0, kCentralEurope},
    {"w. europe standard time|romance standard time", M::Zone, 0, kCentralEurope},
    {"cet|cest|mez|mesz", M::ZoneAfterTime, 0, kCentralEurope},
    {"eastern european time|eastern european summer time", M::Zone, 0, kEastEurope},
    {"eet|eest", M::ZoneAfterTime, 0, kEastEurope},
    {"msk|moscow time", M::ZoneAfterTime, 0, "Europe/Moscow"},
    {"trt|turkey time", M::ZoneAfterTime, 0, "Europe/Istanbul"},
    {"sast", M::ZoneAfterTime, 0, "Africa/Johannesburg"},
    {"wat", M::ZoneAfterTime, 0, "Africa/Lagos"},
    {"cat", M::ZoneAfterTime, 1, "Africa/Maputo|Africa/Harare|Africa/Lusaka|Africa/Kigali"},
    {"eat", M::ZoneAfterTime, 1, "Africa/Nairobi|Africa/Addis_Ababa|Africa/Kampala|Africa/Dar_es_Salaam"},
    {"gst|gulf standard time", M::ZoneAfterTime, 0, "Asia/Dubai|Asia/Muscat"},
    {"pkt", M::ZoneAfterTime, 0, "Asia/Karachi"},
    {"npt", M::ZoneAfterTime, 0, "Asia/Kathmandu"},
    {"ict", M::ZoneAfterTime, 0, "Asia/Bangkok|Asia/Ho_Chi_Minh"},
    {"wib", M::ZoneAfterTime, 0, "Asia/Jakarta"},
    {"sgt|singapore time", M::ZoneAfterTime, 0, "Asia/Singapore"},
    {"myt", M::ZoneAfterTime, 0, "Asia/Kuala_Lumpur"},
    {"hkt|hong kong time", M::ZoneAfterTime, 0, "Asia/Hong_Kong"},
    {"china standard time|china time|beijing time", M::Zone, 0, "Asia/Shanghai"},
    {"pht|philippine time", M::ZoneAfterTime, 0, "Asia/Manila"},
    {"jst|japan time|japan standard time", M::ZoneAfterTime, 0, "Asia/Tokyo"},
    {"kst|korea time", M::ZoneAfterTime, 0, "Asia/Seoul"},
    {"awst", M::ZoneAfterTime, 0, "Australia/Perth"},
    {"acst|acdt", M::ZoneAfterTime, 0, "Australia/Adelaide|Australia/Darwin"},
    {"aest", M::ZoneAfterTime, 0, "Australia/Sydney|Australia/Melbourne|Australia/Brisbane|Australia/Hobart"},
    {"aedt|aet", M::ZoneAfterTime, 0, "Australia/Sydney|Australia/Melbourne|Australia/Hobart"},
    {"australian eastern standard time|australian eastern daylight time|australian eastern time", M::Zone, 0, "Australia/Sydney|Australia/Melbourne|Australia/Brisbane|Australia/Hobart"},
    {"nzst|nzdt|nzt|new zealand time|nz time", M::ZoneAfterTime, 0, "Pacific/Auckland"},
    {"san francisco|seattle|san diego|portland|california|silicon valley|las vegas", M::ZoneWord, 0, "America/Los_Angeles"},
    {"boston|washington|washington dc|washington d.c.|nyc|miami|atlanta|philadelphia|ny", M::ZoneWord, 0, "America/New_York"},
    {"houston|dallas|austin|minneapolis|new orleans", M::ZoneWord, 0, "America/Chicago"},
    {"edinburgh|glasgow|manchester|cardiff|bristol", M::ZoneWord, 0, "Europe/London"},
    {"munich|frankfurt|hamburg|cologne|german", M::ZoneWord, 0, "Europe/Berlin"},
    {"barcelona|spanish", M::ZoneWord, 0, "Europe/Madrid"},
    {"milan|italian", M::ZoneWord, 0, "Europe/Rome"},
    {"french|lyon", M::ZoneWord, 0, "Europe/Paris"},
    {"geneva|swiss|bern", M::ZoneWord, 0, "Europe/Zurich"},
    {"mumbai|delhi|new delhi|bangalore|bengaluru|chennai|hyderabad|indian", M::ZoneWord, 0, "Asia/Kolkata"},
    {"beijing|shenzhen|chinese", M::ZoneWord, 0, "Asia/Shanghai"},
    {"osaka|kyoto", M::ZoneWord, 0, "Asia/Tokyo"},
    {"tel aviv", M::ZoneWord, 0, "Asia/Jerusalem"},
    {"abu dhabi", M::ZoneWord, 0, "Asia/Dubai"},
    {"canberra", M::ZoneWord, 0, "Australia/Sydney"},
    {"wellington", M::ZoneWord, 0, "Pacific/Auckland"},
    {"cape town", M::ZoneWord, 0, "Africa/Johannesburg"},
    {"rio|rio de janeiro|são paulo", M::ZoneWord, 0, "America/Sao_Paulo"},
    {"ottawa|montreal|québec|quebec", M::ZoneWord, 0, "America/Toronto"},
    {"calgary", M::ZoneWord, 0, "America/Edmonton"},
    {"london", M::ZoneWord, 0, "Europe/London"},
    {"dublin", M::ZoneWord, 0, "Europe/Dublin"},
    {"lisbon", M::ZoneWord, 0, "Europe/Lisbon"},
    {"madrid", M::ZoneWord, 0, "Europe/Madrid"},
    {"paris", M::ZoneWord, 0, "Europe/Paris"},
    {"brussels", M::ZoneWord, 0, "Europe/Brussels"},
    {"amsterdam", M::ZoneWord, 0, "Europe/Amsterdam"},
    {"berlin", M::ZoneWord, 0, "Europe/Berlin"},
    {"zurich", M::ZoneWord, 0, "Europe/Zurich"},
    {"rome", M::ZoneWord, 0, "Europe/Rome"},
    {"vienna", M::ZoneWord, 0, "Europe/Vienna"},
    {"prague", M::ZoneWord, 0, "Europe/Prague"},
    {"warsaw", M::ZoneWord, 0, "Europe/Warsaw"},
    {"budapest", M::ZoneWord, 0, "Europe/Budapest"},
    {"copenhagen", M::ZoneWord, 0, "Europe/Copenhagen"},
    {"stockholm", M::ZoneWord, 0, "Europe/Stockholm"},
    {"oslo", M::ZoneWord, 0, "Europe/Oslo"},
    {"helsinki", M::ZoneWord, 0, "Europe/Helsinki"},
    {"athens", M::ZoneWord, 0, "Europe/Athens"},
    {"bucharest", M::ZoneWord, 0, "Europe/Bucharest"},
    {"sofia", M::ZoneWord, 0, "Europe/Sofia"},
    {"istanbul", M::ZoneWord, 0, "Europe/Istanbul"},
    {"kyiv", M::ZoneWord, 0, "Europe/Kyiv"},
    {"kiev", M::ZoneWord, 0, "Europe/Kyiv"},
    {"moscow", M::ZoneWord, 0, "Europe/Moscow"},
    {"riga", M::ZoneWord, 0, "Europe/Riga"},
    {"vilnius", M::ZoneWord, 0, "Europe/Vilnius"},
    {"tallinn", M::ZoneWord, 0, "Europe/Tallinn"},
    {"cairo", M::ZoneWord, 0, "Africa/Cairo"},
    {"lagos", M::ZoneWord, 0, "Africa/Lagos"},
    {"nairobi", M::ZoneWord, 0, "Africa/Nairobi"},
    {"johannesburg", M::ZoneWord, 0, "Africa/Johannesburg"},
    {"casablanca", M::ZoneWord, 0, "Africa/Casablanca"},
    {"accra", M::ZoneWord, 0, "Africa/Accra"},
    {"jerusalem", M::ZoneWord, 0, "Asia/Jerusalem"},
    {"dubai", M::ZoneWord, 0, "Asia/Dubai"},
    {"riyadh", M::ZoneWord, 0, "Asia/Riyadh"},
    {"tehran", M::ZoneWord, 0, "Asia/Tehran"},
    {"karachi", M::ZoneWord, 0, "Asia/Karachi"},
    {"kolkata", M::ZoneWord, 0, "Asia/Kolkata"},
    {"dhaka", M::ZoneWord, 0, "Asia/Dhaka"},
    {"bangkok", M::ZoneWord, 0, "Asia/Bangkok"},
    {"jakarta", M::ZoneWord, 0, "Asia/Jakarta"},
    {"singapore", M::ZoneWord, 0, "Asia/Singapore"},
    {"kuala lumpur", M::ZoneWord, 0, "Asia/Kuala_Lumpur"},
    {"manila", M::ZoneWord, 0, "Asia/Manila"},
    {"hong kong", M::ZoneWord, 0, "Asia/Hong_Kong"},
    {"shanghai", M::ZoneWord, 0, "Asia/Shanghai"},
    {"taipei", M::ZoneWord, 0, "Asia/Taipei"},
    {"tokyo", M::ZoneWord, 0, "Asia/Tokyo"},
    {"seoul", M::ZoneWord, 0, "Asia/Seoul"},
    {"perth", M::ZoneWord, 0, "Australia/Perth"},
    {"adelaide", M::ZoneWord, 0, "Australia/Adelaide"},
    {"brisbane", M::ZoneWord, 0, "Australia/Brisbane"},
    {"sydney", M::ZoneWord, 0, "Australia/Sydney"},
    {"melbourne", M::ZoneWord, 0, "Australia/Melbourne"},
    {"auckland", M::ZoneWord, 0, "Pacific/Auckland"},
    {"honolulu", M::ZoneWord, 0, "Pacific/Honolulu"},
    {"anchorage", M::ZoneWord, 0, "America/Anchorage"},
    {"los angeles", M::ZoneWord, 0, "America/Los_Angeles"},
    {"la", M::ZoneWord, 0, "America/Los_Angeles"},
    {"vancouver", M::ZoneWord, 0, "America/Vancouver"},
    {"denver", M::ZoneWord, 0, "America/Denver"},
    {"phoenix", M::ZoneWord, 0, "America/Phoenix"},
    {"chicago", M::ZoneWord, 0, "America/Chicago"},
    {"mexico city", M::ZoneWord, 0, "America/Mexico_City"},
    {"new york", M::ZoneWord, 0, "America/New_York"},
    {"toronto", M::ZoneWord, 0, "America/Toronto"},
    {"detroit", M::ZoneWord, 0, "America/Detroit"},
    {"halifax", M::ZoneWord, 0, "America/Halifax"},
    {"bogota", M::ZoneWord, 0, "America/Bogota"},
    {"lima", M::ZoneWord, 0, "America/Lima"},
    {"caracas", M::ZoneWord, 0, "America/Caracas"},
    {"santiago", M::ZoneWord, 0, "America/Santiago"},
    {"buenos aires", M::ZoneWord, 0, "America/Argentina/Buenos_Aires"},
    {"sao paulo", M::ZoneWord, 0, "America/Sao_Paulo"},
    {"time", M::ZoneWord, 1},
};

} // namespace

std::span<const Entry> englishZones() {
    return kZones;
}

} // namespace pindle::conversion
