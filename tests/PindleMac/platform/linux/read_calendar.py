"""Reads the data server's default calendar as two other programs would.

read_calendar.py   prints one JSON array with what each event is to a client of the data server, and
                   to a reader of the calendar's file that has only the zones written in it
"""
import json
import os
import sys
from datetime import datetime, timedelta, timezone

import gi

gi.require_version("ECal", "2.0")
gi.require_version("EDataServer", "1.2")
gi.require_version("ICalGLib", "3.0")
from gi.repository import ECal, EDataServer, ICalGLib  # noqa: E402

NO_WAIT_FOR_ONLINE = 0xFFFFFFFF


def client_instant(client, value):
    """Seconds since 1970 of an ECal date and time."""
    time = value.get_value()
    if time.is_utc():
        return time.as_timet()
    _, zone = client.get_timezone_sync(value.get_tzid(), None)
    return time.as_timet_with_zone(zone)


def components(calendar, kind):
    """All components of a kind; a component has only one place to look on from."""
    found = [calendar.get_first_component(kind)]
    while found[-1]:
        found.append(calendar.get_next_component(kind))
    return found[:-1]


def zones_written(calendar):
    """The zones that the calendar's file defines, by name."""
    zones = {}
    for definition in components(calendar, ICalGLib.ComponentKind.VTIMEZONE_COMPONENT):
        name = definition.get_first_property(ICalGLib.PropertyKind.TZID_PROPERTY).get_tzid()
        zones[name] = ICalGLib.Timezone.new()
        zones[name].set_component(definition.clone())
    return zones


def file_instant(zones, prop, value):
    parameter = prop.get_first_parameter(ICalGLib.ParameterKind.TZID_PARAMETER)
    if parameter is None:
        return value.as_timet()
    # By this zone's rules alone: its offset, subtracted from the wall clock.
    offset, _ = zones[parameter.get_tzid()].get_utc_offset(value)
    wall = datetime(value.get_year(), value.get_month(), value.get_day(), value.get_hour(),
                    value.get_minute(), value.get_second(), tzinfo=timezone.utc)
    return int((wall - timedelta(seconds=offset)).timestamp())


def read_file(path):
    if not os.path.exists(path):
        return {}
    with open(path, encoding="utf-8") as file:
        calendar = ICalGLib.Component.new_from_string(file.read())
    zones = zones_written(calendar)
    found = {}
    for event in components(calendar, ICalGLib.ComponentKind.VEVENT_COMPONENT):
        start = event.get_first_property(ICalGLib.PropertyKind.DTSTART_PROPERTY)
        end = event.get_first_property(ICalGLib.PropertyKind.DTEND_PROPERTY)
        found[event.get_uid()] = {"fileStart": file_instant(zones, start, start.get_dtstart()),
                                  "fileEnd": file_instant(zones, end, end.get_dtend())}
    return found


def text(component):
    return component.get_value() if component else ""


def read_store():
    registry = EDataServer.SourceRegistry.new_sync(None)
    source = registry.ref_default_calendar()
    client = ECal.Client.connect_sync(source, ECal.ClientSourceType.EVENTS, NO_WAIT_FOR_ONLINE, None)
    _, components = client.get_object_list_as_comps_sync("#t", None)
    events = []
    for component in components:
        start, end = component.get_dtstart(), component.get_dtend()
        notes = component.get_descriptions()
        events.append({
            "uid": component.get_uid(),
            "title": text(component.get_summary()),
            "location": component.get_location() or "",
            "notes": text(notes[0]) if notes else "",
            "start": client_instant(client, start),
            "end": client_instant(client, end),
            "startZone": start.get_tzid() or "",
            "calendar": source.get_uid(),
        })
    return events


def main():
    stored = read_store()
    written = read_file(os.path.join(os.environ["XDG_DATA_HOME"],
                                     "evolution/calendar/system/calendar.ics"))
    for event in stored:
        event.update(written.get(event["uid"], {}))
    json.dump(stored, sys.stdout)


main()
