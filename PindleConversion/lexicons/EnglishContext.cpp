#include "PindleConversion/lexicons/EnglishParts.h"

namespace pindle::conversion {

namespace {

using M = Meaning;

constexpr int v(Label label) {
    return static_cast<int>(label);
}
constexpr int v(EventKind kind) {
    return static_cast<int>(kind);
}
constexpr int v(Role role) {
    return static_cast<int>(role);
}

constexpr Entry kContext[] = {
    // Labels of forms, mails and listings.
    {"subject|title|event|what|topic|summary|event name|name|event title|meeting title|betreff|re",
     M::LabelWord, v(Label::Title)},
    {"meeting name|activity|session|appointment|course|class|lecture|show|film|match|fixture",
     M::LabelWord, v(Label::Title)},
    {"where|location|venue|room|place|address|meeting place|meeting point|meet at|meet|site",
     M::LabelWord, v(Label::Place)},
    {"classroom|hall|office|building|locale|destination|event location|📍", M::LabelWord,
     v(Label::Place)},
    {"when|date and time|date & time|date/time|date / time|event date|when & where|📅", M::LabelWord,
     v(Label::When)},
    {"appointment date|scheduled for|slot|schedule|new time|new date|departure|departs|depart",
     M::LabelWord, v(Label::When)},
    {"date|day|dates|days", M::LabelWord, v(Label::Date)},
    {"time|hours|times|at|event time|start time|starts at|from time|⏰", M::LabelWord,
     v(Label::Time)},
    {"start|starts|begin|begins|from|start date", M::LabelWord, v(Label::Start)},
    {"end|ends|end time|until|finish|finishes|to time|end date|arrival|arrives", M::LabelWord,
     v(Label::End)},
    {"time zone|timezone|tz", M::LabelWord, v(Label::Zone)},
    {"sent|sent at|received|printed|posted|published|created|updated|last updated|modified|order "
     "date",
     M::LabelWord, v(Label::Sent)},
    {"invoice date|issued|date sent|date posted|booked on|ordered", M::LabelWord, v(Label::Sent)},
    {"from|to|cc|bcc|reply-to|message-id|importance", M::LabelWord, v(Label::Mail)},
    {"organizer|organiser|organized by|host|hosted by|by|attendees|invitees", M::LabelWord,
     v(Label::Sender)},
    {"required|optional|participants|who|guests|speaker|speakers|instructor|teacher|contact|phone|"
     "tel",
     M::LabelWord, v(Label::Sender)},
    {"invited|presenter|email|e-mail|calendar|reference|ref|booking ref", M::LabelWord,
     v(Label::Sender)},
    {"order number|order no|booking reference|confirmation|confirmation number|ticket|seat|seats",
     M::LabelWord, v(Label::Sender)},
    {"duration|length|runtime", M::LabelWord, v(Label::Duration)},
    {"link|url|join|zoom|teams|meeting link|join link|website|register|tickets|video call "
     "link|join zoom meeting",
     M::LabelWord, v(Label::Link)},
    {"join here|join at|dial-in|dial in|meeting id|passcode|meet link|info|more info", M::LabelWord,
     v(Label::Link)},
    {"rsvp|rsvp by|deadline|register by|registration deadline|registration closes|apply by|order "
     "by",
     M::LabelWord, v(Label::Deadline)},
    {"reply by|respond by|sign up by|due|due date|refund until", M::LabelWord, v(Label::Deadline)},
    {"agenda|notes|note|description|details|ps|p.s.|bring|please bring|about|dress "
     "code|comments|menu",
     M::LabelWord, v(Label::Note)},
    {"price|cost|admission|fee|total|fees|entry|amount", M::LabelWord, v(Label::Price)},

    // Places.
    {"at|@|over at|down at|held at|hosted at|located at|outside|inside|meet at|from",
     M::PlaceMarker, 1},
    {"in|near|by|to|on|venue|held in|takes place in|location", M::PlaceMarker, 0},
    {"room|rooms|hall|library|studio|theatre|theater|park|center|centre|school|church|cafe|café",
     M::PlaceNoun},
    {"restaurant|bar|pub|hotel|office|offices|clinic|hospital|gym|stadium|arena|museum|gallery",
     M::PlaceNoun},
    {"garden|gardens|court|field|fields|building|house|campus|auditorium|cafeteria|canteen|lobby",
     M::PlaceNoun},
    {"lounge|stage|pool|beach|station|airport|terminal|gate|market|mall|square|plaza|tower|annex",
     M::PlaceNoun},
    {"annexe|cellar|garage|salon|shop|store|bakery|boardroom|lab|laboratory|classroom|deck",
     M::PlaceNoun},
    {"rooftop|terrace|chapel|cathedral|temple|mosque|synagogue|university|college|institute",
     M::PlaceNoun},
    {"headquarters|hq|barn|farm|inn|tavern|brewery|winery|bistro|diner|pizzeria|grill|grille",
     M::PlaceNoun},
    {"pavilion|rink|track|lodge|cabin|villa|castle|palace|lake|pier|dock|harbour|harbor|marina|zoo",
     M::PlaceNoun},
    {"suite|floor|entrance|cinema|playhouse|ballroom|basement|courtyard|foyer|playground|depot",
     M::PlaceNoun},
    {"gymnasium|conference centre|convention center|community "
     "center|showroom|surgery|bookstore|bookshop|coffeehouse|conference room|meeting room|town "
     "hall|yard",
     M::PlaceNoun},
    {"kitchen|clubhouse|lawn|bridge|trailhead|amphitheatre|amphitheater|opera house|aula|quad",
     M::PlaceNoun},
    {"theatre royal|leisure centre|village|vineyard|nursery|dojo|cantina|taproom|warehouse|hub",
     M::PlaceNoun},
    {"platform|parlor|parlour|deli|trattoria|ristorante|steakhouse|coffee shop|practice|gym hall",
     M::PlaceNoun},
    {"street|st|road|rd|avenue|ave|blvd|boulevard|lane|ln|drive|close|way|crescent|row|mews|quay",
     M::StreetWord},
    {"parkway|pkwy|hwy|highway|court|ct|place|pl|square|sq|terrace|circle|hill|grove|gardens|wharf",
     M::StreetWord},
    {"on|at|from|for|with|w/|to|by|and then|then|if|when|because|so|but|please|which|that|who|we",
     M::PlaceStop},
    {"i|you|is|are|was|will|until|till|before|after|starting|starts|begins|doors|rsvp|bring|or",
     M::PlaceStop},
    {"about|around|during|between|as|let|can|could|would|should|i'll|we'll|he|she|they|works|work",
     M::PlaceStop},
    {"ok|okay|instead|again|tickets|price|next|this|every|since|via|@|it's|has|have|in case|just",
     M::PlaceStop},
    {"asap|together|once|also|join|dinner|lunch|drinks|register|hosted|starring|feat|ft|not",
     M::PlaceStop},
    {"least|most|last|first|all|once|the moment|the latest|the earliest|your|the end|the beginning",
     M::NotAPlace},
    {"the time|which|this time|that time|what time|time|work on|the same time|noon|midnight|night",
     M::NotAPlace},
    {"person|advance|case|order|addition|total|general|particular|touch|the meantime|fact|front",
     M::NotAPlace},
    {"the morning|the afternoon|the evening|the loop|mind|progress|time for|any time|me|us|them|it",
     M::NotAPlace},
    {"the calendar|the diary|the way|the door|a "
     "time|half|quarter|that|this|my|any|some|sunrise|sunset",
     M::NotAPlace},
    {"dawn|dusk|risk|large|once|full|short|english|french|german|spanish|short notice|your "
     "earliest",
     M::NotAPlace},
    {"zoom|teams|google meet|skype|webex|microsoft teams|ms teams|discord|facetime|google hangouts",
     M::Online},
    {"online|slack|slack huddle|jitsi|gotomeeting|video call|whereby|teams meeting|microsoft teams "
     "meeting|instagram live|youtube live",
     M::Online},

    // Kinds of events: they name the title and tell morning from evening.
    {"dinner|drinks|drink|movie|film|concert|gig|party|band|opera|ballet|musical|play|supper|"
     "screening",
     M::Event, v(EventKind::Evening)},
    {"cinema|karaoke|quiz|quiz night|game night|date night|movie night|gala|open "
     "mic|comedy|recital",
     M::Event, v(EventKind::Evening)},
    {"performance|disco|dj|live music|pub|show|theatre|theater|premiere|prom|potluck|book "
     "club|choir",
     M::Event, v(EventKind::Evening)},
    {"rehearsal|beers|beer|wine|cocktails|pints|bbq|barbecue|cookout|poker|trivia|trivia night",
     M::Event, v(EventKind::Evening)},
    {"tasting|music|curtain|happy hour|gathering|girls night|bonfire|fireworks|babysitting",
     M::Event, v(EventKind::Evening)},
    {"doors|bowling|pizza|takeaway|sleepover|housewarming|farewell|reception|awards|tour night",
     M::Event, v(EventKind::Evening)},
    {"breakfast|brunch|park run|parkrun|morning run|sunrise|mass|church service|farmers market",
     M::Event, v(EventKind::Morning)},
    {"lunch|luncheon", M::Event, v(EventKind::Midday)},
    {"meeting|meetings|standup|stand-up|sync|call|interview|review|workshop|training|lecture|exam",
     M::Event, v(EventKind::Work)},
    {"appointment|dentist|doctor|gp|vet|checkup|check-up|haircut|physio|service|conference|webinar",
     M::Event, v(EventKind::Work)},
    {"demo|kickoff|kick-off|kick "
     "off|lesson|seminar|onboarding|retro|retrospective|planning|catch-up",
     M::Event, v(EventKind::Work)},
    {"catch up|induction|test|oil change|repair|inspection|delivery|consultation|session|briefing",
     M::Event, v(EventKind::Work)},
    {"presentation|talk|keynote|panel|hearing|assembly|orientation|course|class|surgery|scan|"
     "tutoring",
     M::Event, v(EventKind::Work)},
    {"tutorial|audit|viewing|walkthrough|critique|one-on-one|1:1|board meeting|follow-up|follow up",
     M::Event, v(EventKind::Work)},
    {"check-in|huddle|town hall|all-hands|all hands|hackathon|symposium|summit|q&a|eye "
     "exam|fitting",
     M::Event, v(EventKind::Work)},
    {"flight|train|bus|ferry|departure|departs|leaves|depart|boarding|coach|arrives|cruise|"
     "eurostar",
     M::Event, v(EventKind::Travel)},
    {"birthday|wedding|anniversary|picnic|coffee|match|game|practice|fair|vacation|trip|deadline",
     M::Event, v(EventKind::Neutral)},
    {"holiday|holidays|festival|exhibition|release|launch|funeral|christening|graduation|open "
     "house",
     M::Event, v(EventKind::Neutral)},
    {"meetup|meet-up|meet "
     "up|retreat|conference|tournament|race|marathon|hike|walk|sale|auction|camp",
     M::Event, v(EventKind::Neutral)},
    {"reunion|ceremony|parade|election|strike|maintenance|break|visit|tour|drive|blood "
     "drive|podcast",
     M::Event, v(EventKind::Neutral)},
    {"recording|pickup|pick-up|drop-off|yoga|pilates|swim|swimming|football|soccer|tennis|"
     "basketball",
     M::Event, v(EventKind::Neutral)},
    {"event|celebration|opening|tea|chat|hangout|bake sale|book "
     "fair|fundraiser|expo|market|renewal",
     M::Event, v(EventKind::Neutral)},
    {"pick up|renew|submit|submission|due|essay|application|stay|booking|reservation|shift|on call",
     M::Event, v(EventKind::Neutral)},

    // What a date or time is in the story.
    {"rsvp|rsvp by|please rsvp|please rsvp by|register by|registration closes|registration ends",
     M::RoleWord, v(Role::Deadline)},
    {"order by|apply by|sign up by|reply by|respond by|book by|early bird|deadline|submit by|buy "
     "by",
     M::RoleWord, v(Role::Deadline)},
    {"tickets on sale|on sale|tickets go on sale|registration opens|registration deadline|register "
     "before",
     M::RoleWord, v(Role::Deadline)},
    {"confirm by|let me know by|let us know by|pay by|payment due|due by|cancel by|closes|valid "
     "until",
     M::RoleWord, v(Role::Deadline)},
    {"abstracts due|submissions due|submissions close|sign-ups close|sales end|free cancellation "
     "until",
     M::RoleWord, v(Role::Deadline)},
    {"no later than|get back to me by|answer by|offer ends|discount ends|expires|sign up before",
     M::RoleWord, v(Role::Deadline)},
    {"register until|registration until|registration by|return by|send by|in by|confirm before",
     M::RoleWord, v(Role::Deadline)},
    {"entries close|bookings close|booking closes|bring forms by|forms due|permission slips due",
     M::RoleWord, v(Role::Deadline)},
    {"posted|published|updated|last updated|sent|created|written|printed|issued|as "
     "of|dated|revised",
     M::RoleWord, v(Role::Posted)},
    {"ordered|booked on|modified|copyright|since|your email of|your message of", M::RoleWord,
     v(Role::Posted)},
    {"thanks for your time on|thank you for your|our last meeting|last met|our call on|the minutes "
     "of|minutes from",
     M::RoleWord, v(Role::Posted)},
    {"originally|was scheduled for|instead of|rather than|rescheduled from|moved from|previously",
     M::RoleWord, v(Role::MovedFrom)},
    {"postponed from|was planned for|not on|old date|was due|no longer on|isn't on|not|was on|was "
     "going to be",
     M::RoleWord, v(Role::MovedFrom)},
    {"originally scheduled for|originally planned for|was originally|can't make|cannot make|can't "
     "do|changed from",
     M::RoleWord, v(Role::MovedFrom)},
    {"moved to|now on|rescheduled to|postponed to|postponed until|new date|has been moved "
     "to|pushed to",
     M::RoleWord, v(Role::MovedTo)},
    {"changed to|is now|will now be|moves to|move it to|shift to|shifted to|make it|let's "
     "do|rescheduled for",
     M::RoleWord, v(Role::MovedTo)},
    {"how about|can we do|could we do|what about|let's say|let's make it|works better|new "
     "time|brought forward to",
     M::RoleWord, v(Role::MovedTo)},
    {"has been rescheduled to|has moved to|now at|will take place on|takes place on|pushed back "
     "to|delayed until|delayed to|now",
     M::RoleWord, v(Role::MovedTo)},
    {"until|till|til|ends|ends at|ending|ending at|finishes|finish|finishing|finishes "
     "at|arriving|arrives",
     M::RoleWord, v(Role::End)},
    {"arrive|arr|arr.|lands|landing|ends on|wraps up|wrap up|done by|back by|home by|over "
     "by|arrives at|finish by|return|returning|returns|ending on|lands at",
     M::RoleWord, v(Role::End)},
    {"doors|doors open|doors at|arrive by|please arrive|please arrive by|check in|check-in "
     "opens|registration from|registration at|boarding|gates",
     M::RoleWord, v(Role::Side)},
    {"boards|gates open|setup|set up|call time|warm-up|warm up|bag drop|box office|meet at|bar "
     "opens|networking from",
     M::RoleWord, v(Role::Side)},
    {"show|music|curtain|curtain up|starts|start|starts "
     "at|kick-off|kickoff|performance|begins|begins at|concert",
     M::RoleWord, v(Role::Show)},

    // Pieces that are no title.
    {"hi|hello|hey|dear|hiya|good morning|good afternoon|good evening|greetings|howdy|yo|hi all|hi "
     "everyone",
     M::Greeting},
    {"thanks|thank you|thx|cheers|best|regards|kind regards|best regards|sincerely|best "
     "wishes|many thanks|ta",
     M::Greeting},
    {"see you|see you there|see you then|looking forward|talk soon|love|xx|sounds "
     "good|sure|yes|yeah|yep|ok|okay|no|nope|great|perfect|cool|congrats|congratulations",
     M::Greeting},
    {"hope|i hope|hope you|all|team|everyone|folks|guys|as discussed|as agreed|per our "
     "conversation",
     M::Greeting},
    {"you're registered|you are registered|registration confirmed|booking confirmed|your booking "
     "is confirmed|confirmed|order confirmed|success|you're in|you're going|congratulations",
     M::Greeting},
    {"register|registration|join "
     "here|join|tickets|price|bring|cancelled|canceled|only|free|click|rsvp|please|minutes|doors|"
     "from",
     M::Chatter},
    {"let me know|if|sign up|more info|contact|call|email|visit|parking|every|don't be late|does "
     "that|would that|works|can you|could you|will you|are you",
     M::Chatter},
    {"read more|unsubscribe|view|follow|share|add to calendar|save the|no|same place|submit "
     "via|posted|published|updated|sent|show more|limited|hosted by|online|members|get tickets|buy "
     "tickets|spots left|seats left|spaces left",
     M::Chatter},
    {"forwarded message|begin forwarded message|original message|begin forwarded", M::Wrote, 1},
    {"wrote|writes", M::Wrote},

    {"would like to invite you to|would like to|invite you to|would like you to|like to|invite "
     "everyone to|are happy to invite you to|are pleased to invite you to|are excited to",
     M::TitleLead},
    {"let's|lets|let us|we will|we'll|we are|we're|we have|we've got|i have|i've got|i have "
     "got|you have|you've got|there is|there's|there will be|there'll be",
     M::TitleLead},
    {"wanna|want to|do you want to|would you like to|fancy|fancy a|care for|up for|shall we|can "
     "we|could we|how about|what about|are you free for|free for|would you be up for|anyone up for",
     M::TitleLead},
    {"book|plan|call|visit", M::TitleLead, 3},
    {"grab|get|have|do|schedule|schedule a|schedule the|set "
     "up|organise|organize|hold|arrange|attend|join us for|please join us for|join us at|join us "
     "in|join us|join me for|come to|come along to|come and|invited to|you are invited to|you're "
     "invited to|you are cordially invited to|you're invited|please|please attend",
     M::TitleLead},
    {"reminder|a reminder|just a reminder|friendly reminder|quick reminder|gentle "
     "reminder|reminder that|reminder to|remember|remember to|don't forget|don't forget to|dont "
     "forget|do not forget|remind me to|remind me|fyi|heads up|note|nb|ps|just|just a|save the "
     "date|save the date for|that|also",
     M::TitleLead},
    {"the|a|an|our|my|your|next|so|and|but|then|well|ok|okay|hey|hi|hello|oh|btw|by the "
     "way|also|or|of|for|to|is|are|will "
     "be|it's|its|on|at|in|from|by|@|until|about|around|with|this|i|we|you|us|me|it|there|be|as|"
     "yes|no|sure|next up|upcoming|new",
     M::TitleLead},
    {"i need to|i have to|i've to|we need to|need to|have to|must|i must|gotta|i gotta|we "
     "should|you should|i am|i'm|i'm going to|we're going to|going to|we are going to|i'll be|i "
     "will|i'll|happy to",
     M::TitleLead},
    {"re|fw|fwd|aw|wg|accepted|invitation|updated invitation|declined|tentative|tentatively "
     "accepted|canceled|cancelled|cancelled event|updated|external|ext|invite|new event|meeting "
     "invitation|event|itinerary|your itinerary|confirmed|confirmation|booking "
     "confirmation|appointment reminder|appointment "
     "confirmation|appointment|subject|title|tbc|urgent|important|notice|notification|calendar|"
     "todo|to do|to-do|hear ye",
     M::TitleLead, 1},
    {"your appointment with|you have an appointment with|you have an appointment for|your "
     "appointment is|your appointment for|your reservation at|your booking for|your booking "
     "at|your ticket for|your tickets for|tickets for",
     M::TitleLead, 2},
    {"is|are|will be|will be held|will take place|takes place|taking place|is "
     "happening|happens|held|is held|is scheduled for|is scheduled|scheduled|scheduled "
     "for|starts|starting|start|begins|beginning|opens|open|has been moved|is booked|is set "
     "for|set for|is due|due|closes|ends|kicks off|is on|are on|runs|was|has been|has been moved "
     "to|moved|rescheduled|moved to|rescheduled to|is now|now|is confirmed for|confirmed for|is "
     "confirmed|booked for|going ahead|is planned for|planned for|planned|coming "
     "up|instead|please|ok|okay|works|is back|returns|leaves|will|be",
     M::TitleTail},
    {"at|on|in|from|to|by|the|for|and|of|with|w|@|until|till|till|a|an|or|but|that|this|next|"
     "coming|every|each|around|about|approx|circa|between|as|per|my|your|our|it|again|then|so|also|"
     "daily|both|all day|there|here|via|before|after|during|starting from|is "
     "it|maybe|perhaps|say|like|sharp|meet at|see "
     "you|tba|tbc|tbd|all-day|usual|same|originally|was|not|if|when|where|doors|music|show "
     "starts|only|within",
     M::TitleTail},

    {"mr|mrs|ms|miss|mx|dr|prof|professor|sir|rev|father|sister|coach", M::Person},
    {"with|w/|and|&|vs|vs.|v|v.|featuring|feat|feat.|ft|ft.", M::Person},
    {"mr|mrs|ms|dr|prof|st|sr|jr|no|vs|ft|ave|rd|blvd|approx|dept|inc|ltd|co|e.g|i.e|etc|jan|feb|"
     "mar|apr|jun|jul|aug|sep|sept|oct|nov|dec|mon|tue|tues|wed|thu|thurs|fri|sat|sun|bldg|rm|fl|"
     "ext|mt|ft|feat|lt|sgt|rev|hon|tel|p|a|arr|dep|nr|str|min|hr|hrs|apt|ca",
     M::Abbreviation},
    {"was|were|had|did|went|met|happened|took|said|told|got|saw|came|gave|made|won|lost|beat|"
     "scored|founded|born|died|established|launched|released|occurred|ended|began|started|visited|"
     "bought|sold|reported|announced|arrived|left|finished|attended|fell|rose|grew|shipped|"
     "delivered|sent|wrote|published|posted|recorded|killed|signed|resigned|elected|built|merged|"
     "fixed|committed|deployed|crashed|played|talked|spoke|discussed|enjoyed|been|ate|watched|"
     "slept|called|received|paid",
     M::PastVerb},
    {"for|lasts|lasting|duration|takes|it takes|will take|runs|running time|length|runs for|lasts "
     "for",
     M::DurationMark},
    {"early|earlier|before|ago|notice|walk|drive|away|from|prior|later|late|after|in "
     "advance|old|left|beforehand|delay|of|ahead|per|a week|a day|each",
     M::NoDuration},
    {"is|are|will|starts|begins|takes|let's|shall|going|can|could|would|should|want|be|is now|must",
     M::PresentVerb},
    {"daily|each day|every day|per day", M::Daily},
    {"at|on|in|with|w/"
     "|for|to|and|or|if|then|works|work|work?|okay|ok|sharp|until|by|tomorrow|today|tonight|this|"
     "next|when|but|because|so|instead|before|after|the|from|please|it|is|would|as|about|we|i|you|"
     "my|our|good|fine|should|maybe|doors|be|have|via|outside|meet|he|she|does|can|bring|near|"
     "inside|there|that|in the|at the|now|not|me|us|right|also|start|finish",
     M::Connector},
};

} // namespace

std::span<const Entry> englishContext() {
    return kContext;
}

} // namespace pindle::conversion
