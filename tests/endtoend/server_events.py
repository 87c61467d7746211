"""Prints every event of the calendar server's default calendar, as iCalendar text."""

import gi

gi.require_version("ECal", "2.0")
gi.require_version("EDataServer", "1.2")
from gi.repository import ECal, EDataServer  # noqa: E402

NO_WAIT = 0xFFFFFFFF  # for the calendar's backend to go online, in seconds

registry = EDataServer.SourceRegistry.new_sync(None)
client = ECal.Client.connect_sync(registry.ref_default_calendar(), ECal.ClientSourceType.EVENTS,
                                  NO_WAIT, None)
done, events = client.get_object_list_sync("#t", None)
for event in events:
    print(event.as_ical_string())
