"""How a check can end, and the words for each check, in their order."""

SEEN, NOT_SEEN, NOT_APPLICABLE = "seen", "not seen", "not applicable"

NAMES = {
    "session": "Session starts",
    "first-run": "First window connects the agent",
    "icon": "Icon in the bar",
    "legible": "Icon legible",
    "panel": "Panel beside the icon",
    "entry": "Panel without task-bar entry",
    "closes": "Panel closes when something else is used",
    "menu": "Menu at each right click",
    "banner": "Banner's place",
    "words": "Banner's words",
    "focus": "Focus stays",
    "attention": "Icon shows the wait, legibly",
    "jump": "Jump to the terminal",
    "dark": "Dark and light",
    "legible-later": "Icon legible in dark, and in light again",
    "sigterm": "Ends at SIGTERM within 300 ms",
    "login": "Login switch",
    "autostart": "Started by the session",
    "end": "Ends with the session within 300 ms",
}
