"""A message bus of one's own."""

CONFIGURATION = """<busconfig>
  <type>{kind}</type>
  <listen>unix:path={socket}</listen>
  <auth>EXTERNAL</auth>
  <policy context="default">
    <allow send_destination="*" eavesdrop="true"/>
    <allow eavesdrop="true"/>
    <allow own="*"/>
  </policy>
</busconfig>
"""


def command(file, kind, socket):
    """The command of a bus of the kind "session" or "system" that starts no services; `file` becomes its
    configuration."""
    file.write_text(CONFIGURATION.format(kind=kind, socket=socket), encoding="utf-8")
    return ["dbus-daemon", "--nofork", f"--config-file={file}"]
