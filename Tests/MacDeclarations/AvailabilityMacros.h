#pragma once

// Qt includes this; nothing of it is used.
