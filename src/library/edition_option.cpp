#include "edition_option.h"

Edition toEdition(EditionOption option)
{
    switch (option) {
    case EditionOption::TimeOfDay:
        return Edition::TimeOfDay;
    case EditionOption::Light:
        return Edition::Light;
    case EditionOption::Dark:
        return Edition::Dark;
    case EditionOption::Automatic:
        break;
    }
    return Edition::Automatic;
}

EditionOption toEditionOption(Edition edition)
{
    switch (edition) {
    case Edition::TimeOfDay:
        return EditionOption::TimeOfDay;
    case Edition::Light:
        return EditionOption::Light;
    case Edition::Dark:
        return EditionOption::Dark;
    case Edition::Automatic:
        break;
    }
    return EditionOption::Automatic;
}
