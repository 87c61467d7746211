// What bench/conversion.py asks of chrono-node, the peer: the same texts, with the language told.
//
// usage: peer.js FOLDER answers FILE... | cases ROUNDS FILE... | long FILE | first
//        FOLDER holds the installed module
'use strict';
const fs = require('fs');

const [folder, command, ...rest] = process.argv.slice(2);
const SENTENCE = 'Team lunch on Friday, March 12, 2027 from 12:30 to 13:30 at Café Luna';
const RUNS = 3; // of a long text

const now = () => Number(process.hrtime.bigint()) / 1e3; // microseconds
const began = now();
const chrono = require(`${folder}/node_modules/chrono-node`);

// The parser for a language and region; the general one where there is none for the language.
function parserOf(language, zone) {
    if (language === 'en' && !/^(America|US|Canada)\//.test(zone)) return chrono.en.GB;
    return (chrono[language] || chrono.en).casual;
}

// The day begins: whatever is said of that day lies ahead.
function requestOf({ text, lang, referenceDate, referenceTimezone }) {
    const reference = { instant: new Date(`${referenceDate}T00:00:00Z`), timezone: 0 };
    return { text, reference, parser: parserOf(lang, referenceTimezone) };
}

function convert({ text, reference, parser }) {
    return parser.parse(text, reference, { forwardDate: true });
}

function casesOf(files) {
    const lines = files.flatMap((file) => fs.readFileSync(file, 'utf8').split('\n'));
    return lines.filter(Boolean).map((line) => JSON.parse(line));
}

// Start of the first thing found, as a case writes it.
function startOf([found]) {
    if (!found) return { date: '', time: '' };
    const two = (name) => String(found.start.get(name)).padStart(2, '0');
    const date = `${String(found.start.get('year')).padStart(4, '0')}-${two('month')}-${two('day')}`;
    return { date, time: found.start.isCertain('hour') ? `${two('hour')}:${two('minute')}` : '' };
}

function median(samples) {
    return samples.sort((a, b) => a - b)[Math.floor(samples.length / 2)];
}

function timeOf(request) {
    const from = now();
    convert(request);
    return now() - from;
}

const commands = {
    answers(...files) {
        const cases = casesOf(files);
        return cases.map((each) => ({ id: each.id, ...startOf(convert(requestOf(each))) }));
    },
    cases(rounds, ...files) {
        const requests = casesOf(files).map(requestOf);
        requests.forEach(convert);
        const samples = [];
        const from = now();
        for (let round = 0; round < Number(rounds); ++round)
            for (const request of requests) samples.push(timeOf(request));
        const perSecond = samples.length / ((now() - from) / 1e6);
        return { samples, perSecond, memory: process.memoryUsage().rss / 1024 };
    },
    long(file) {
        const text = fs.readFileSync(file, 'utf8');
        const request = requestOf({ text, lang: 'en', referenceDate: '2026-03-11', referenceTimezone: 'Europe/Berlin' });
        return median(Array.from({ length: RUNS }, () => timeOf(request)));
    },
    first() {
        const request = requestOf({ text: SENTENCE, lang: 'en', referenceDate: '2026-03-11', referenceTimezone: 'Europe/Berlin' });
        convert(request);
        const first = now() - began; // the module is read as well
        return { first, warm: median(Array.from({ length: 1000 }, () => timeOf(request))) };
    },
};

console.log(JSON.stringify(commands[command](...rest)));
