<?xml version="1.0" encoding="utf-8"?>
<!DOCTYPE TS>
<TS version="2.1" sourcelanguage="en">
<context>
    <name>corvane::AboutTab</name>
    <message>
        <source>Corvane %1</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Corvane taps you when Claude Code or Codex needs you.
It needs no account, keeps everything on the Mac and never goes online.</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Website</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Contact</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>From the same maker</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Small, careful Mac apps for people who work with AI agents.</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>More Mac apps ↗</source>
        <translation type="unfinished"></translation>
    </message>
</context>
<context>
    <name>corvane::AgentCard</name>
    <message>
        <source>Connect</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Remove</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Connected</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Claude Code</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Adds a small hook to %1. A backup is saved first; Remove puts it back.</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Alerts when Claude waits for approval, waits for your reply, or finishes. %1</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Sessions that are already running report from now on.</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Codex</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Adds one notify line to %1. Codex only reports when it finishes, not approvals.</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Alerts when Codex finishes a turn. %1</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Conversations that are already open don&apos;t report; new ones do.</source>
        <translation type="unfinished"></translation>
    </message>
</context>
<context>
    <name>corvane::AgentsTab</name>
    <message>
        <source>Show backup in Finder</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Try a test alert</source>
        <translation type="unfinished"></translation>
    </message>
</context>
<context>
    <name>corvane::AlertText</name>
    <message>
        <source>%1 is waiting for your reply</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>%1 is waiting for you</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>%1 finished</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Done just now</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Done %1 min ago</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Waiting for your reply</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Waiting for you</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Running</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>wants to use %1</source>
        <translation type="unfinished"></translation>
    </message>
</context>
<context>
    <name>corvane::AlertsTab</name>
    <message>
        <source>Alert when an agent finishes</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Open Corvane at login</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Play sounds</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Waiting sound</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Finished sound</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Off</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Every %1 min</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Remind me again</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Start</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Quiet for 1 hour</source>
        <translation type="unfinished"></translation>
    </message>
</context>
<context>
    <name>corvane::AppModel</name>
    <message>
        <source>Couldn&apos;t repair the hook that connected agents call: %1</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>%1 — %2. Nothing was changed.</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Couldn&apos;t connect %1: %2</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Couldn&apos;t remove Corvane from %1: %2</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Couldn&apos;t change “Open at login”: %1</source>
        <translation type="unfinished"></translation>
    </message>
</context>
<context>
    <name>corvane::ApplicationMenuBar</name>
    <message>
        <source>About Corvane</source>
        <translation type="unfinished"></translation>
    </message>
</context>
<context>
    <name>corvane::BannerCard</name>
    <message>
        <source>%1, %2</source>
        <translation type="unfinished"></translation>
    </message>
</context>
<context>
    <name>corvane::ConfigEditError</name>
    <message>
        <source>settings.json is not valid JSON</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>config.toml is not UTF-8 text</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Codex already sends notifications to another program (%1). Nothing was changed.</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>%1. Nothing was changed.</source>
        <translation type="unfinished"></translation>
    </message>
</context>
<context>
    <name>corvane::DoneBanner</name>
    <message>
        <source>Close</source>
        <translation type="unfinished"></translation>
    </message>
</context>
<context>
    <name>corvane::FileError</name>
    <message>
        <source>there is no space left on the disk</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>your disk quota is exceeded</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>the disk is read-only</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>you don&apos;t have permission</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>the system does not permit it</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>a folder or file on the way to it is missing</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>a part of its path is not a folder</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>a folder is in its place</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>it is not an ordinary file</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>something else is in its place</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>its symbolic links form a loop</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>its name is too long</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>its path has characters that the agent&apos;s configuration cannot hold</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>there is no Trash on its disk</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>it lies on another disk</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>another program keeps changing it</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>the disk reported an error</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>it would be too large</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>too many files are open</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>there is not enough memory</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>the system reported &quot;%1&quot;</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>The file &quot;%1&quot; could not be read because %2.</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>The file &quot;%1&quot; could not be written because %2.</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>The file &quot;%1&quot; could not be backed up because %2.</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>The folder &quot;%1&quot; could not be created because %2.</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>The file &quot;%1&quot; could not be moved because %2.</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>The file &quot;%1&quot; could not be moved to the Trash because %2.</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>The file &quot;%1&quot; could not be used because %2.</source>
        <translation type="unfinished"></translation>
    </message>
</context>
<context>
    <name>corvane::LoginItem</name>
    <message>
        <source>The system gave no reason.</source>
        <translation type="unfinished"></translation>
    </message>
</context>
<context>
    <name>corvane::MainWindow</name>
    <message>
        <source>Corvane</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>&amp;File</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>&amp;Window</source>
        <translation type="unfinished"></translation>
    </message>
</context>
<context>
    <name>corvane::MenuBarLabel</name>
    <message>
        <source>Corvane</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>%1 agent waiting for you</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>%1 agents waiting for you</source>
        <translation type="unfinished"></translation>
    </message>
</context>
<context>
    <name>corvane::MenuBarView</name>
    <message>
        <source>Corvane</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Custom feature? Contact us</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Connect an agent and Corvane will tap you when it needs you.</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Connect Claude Code</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>No agents running. Start Claude Code and Corvane will tap you when it needs you.</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Resume</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Quiet for 1 hour</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Settings…</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Quit</source>
        <translation type="unfinished"></translation>
    </message>
</context>
<context>
    <name>corvane::OnboardingView</name>
    <message>
        <source>Corvane taps you when your agent needs you.</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>This desktop has no tray: Corvane works in the background, without an icon. To come back here, start it again.</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Try a test alert</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Need a custom feature? Contact us</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Done</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>When Claude Code is waiting for your approval or your reply — or finishes — you hear a sound and see a banner, even in a full-screen app. Lives in your menu bar.</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>When Claude Code is waiting for your approval or your reply — or finishes — you hear a sound and see a banner, even in a full-screen app.</source>
        <translation type="unfinished"></translation>
    </message>
</context>
<context>
    <name>corvane::SessionRow</name>
    <message>
        <source>Snoozed until %1</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Terminal not found</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>%1, %2</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>%1, %2, %3</source>
        <translation type="unfinished"></translation>
    </message>
</context>
<context>
    <name>corvane::SettingsView</name>
    <message>
        <source>Agents</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Alerts</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>About</source>
        <translation type="unfinished"></translation>
    </message>
</context>
<context>
    <name>corvane::SettingsWindow</name>
    <message>
        <source>Corvane Settings</source>
        <translation type="unfinished"></translation>
    </message>
</context>
<context>
    <name>corvane::ShowMainWindowButton</name>
    <message>
        <source>Corvane</source>
        <translation type="unfinished"></translation>
    </message>
</context>
<context>
    <name>corvane::TerminalNotice</name>
    <message>
        <source>Couldn&apos;t bring the terminal forward</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>%1, %2</source>
        <extracomment>What cannot be done, and the agent&apos;s folder, as spoken.</extracomment>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Close</source>
        <translation type="unfinished"></translation>
    </message>
</context>
<context>
    <name>corvane::TrayMenu</name>
    <message>
        <source>Open Corvane</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Connect Claude Code</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Quiet for 1 hour</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Resume</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Settings…</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Quit</source>
        <translation type="unfinished"></translation>
    </message>
</context>
<context>
    <name>corvane::TrayPanel</name>
    <message>
        <source>Corvane</source>
        <translation type="unfinished"></translation>
    </message>
</context>
<context>
    <name>corvane::WaitingBanner</name>
    <message>
        <source>Go to Terminal</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Snooze</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>For %1 minutes</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Close</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Terminal not found</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>waiting %1</source>
        <translation type="unfinished"></translation>
    </message>
</context>
<context>
    <name>corvane::WindowCommands</name>
    <message>
        <source>Settings…</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Close</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Quit</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Sessions</source>
        <translation type="unfinished"></translation>
    </message>
</context>
<context>
    <name>corvane::times</name>
    <message>
        <source>Quiet until %1</source>
        <translation type="unfinished"></translation>
    </message>
</context>
</TS>
