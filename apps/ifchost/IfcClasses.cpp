// SPDX-License-Identifier: Apache-2.0
#include "IfcClasses.h"

#include <algorithm>
#include <array>
#include <map>
#include <string>

namespace ifchost {
namespace {

struct Family {
    std::string_view supertype;
    std::string_view kinds;  // separated by blanks
};

// Subtypes by supertype. IFC4x3's IfcBuiltElement is joined with the older IfcBuildingElement.
constexpr std::array kFamilies = {
    Family{"IfcProduct", "IfcElement IfcProxy IfcSpatialElement"},
    Family{"IfcSpatialElement", "IfcSpatialStructureElement IfcExternalSpatialStructureElement"},
    Family{"IfcSpatialStructureElement",
           "IfcSite IfcBuilding IfcBuildingStorey IfcSpace IfcFacility IfcFacilityPart"},
    Family{"IfcElement",
           "IfcBuildingElement IfcCivilElement IfcDistributionElement IfcElectricalElement "
           "IfcElementAssembly IfcElementComponent IfcEquipmentElement IfcFeatureElement "
           "IfcFurnishingElement IfcGeographicElement IfcGeotechnicalElement IfcTransportElement "
           "IfcTransportationDevice"},
    Family{"IfcBuildingElement",
           "IfcBeam IfcBearing IfcBuildingElementProxy IfcBuiltElement IfcChimney IfcColumn "
           "IfcCourse IfcCovering IfcCurtainWall IfcDeepFoundation IfcDoor IfcEarthworksElement "
           "IfcFooting IfcKerb IfcMember IfcMooringDevice IfcNavigationElement IfcPavement "
           "IfcPile IfcPlate IfcRail IfcRailing IfcRamp IfcRampFlight IfcRoof IfcShadingDevice "
           "IfcSlab IfcStair IfcStairFlight IfcTrackElement IfcWall IfcWindow"},
    Family{"IfcBeam", "IfcBeamStandardCase"},
    Family{"IfcColumn", "IfcColumnStandardCase"},
    Family{"IfcDeepFoundation", "IfcCaissonFoundation"},
    Family{"IfcDoor", "IfcDoorStandardCase"},
    Family{"IfcMember", "IfcMemberStandardCase"},
    Family{"IfcPlate", "IfcPlateStandardCase"},
    Family{"IfcSlab", "IfcSlabStandardCase IfcSlabElementedCase"},
    Family{"IfcWall", "IfcWallStandardCase IfcWallElementedCase"},
    Family{"IfcWindow", "IfcWindowStandardCase"},
    Family{"IfcElementComponent",
           "IfcBuildingElementPart IfcDiscreteAccessory IfcFastener IfcImpactProtectionDevice "
           "IfcMechanicalFastener IfcReinforcingElement IfcSign IfcVibrationDamper "
           "IfcVibrationIsolator"},
    Family{"IfcReinforcingElement",
           "IfcReinforcingBar IfcReinforcingMesh IfcTendon IfcTendonAnchor IfcTendonConduit"},
    Family{"IfcFeatureElement",
           "IfcFeatureElementAddition IfcFeatureElementSubtraction IfcSurfaceFeature"},
    Family{"IfcFeatureElementAddition", "IfcProjectionElement"},
    Family{"IfcFeatureElementSubtraction",
           "IfcEdgeFeature IfcOpeningElement IfcVoidingFeature IfcOpeningStandardCase"},
    Family{"IfcFurnishingElement", "IfcFurniture IfcSystemFurnitureElement"},
    Family{"IfcTransportationDevice", "IfcVehicle"},
    Family{"IfcDistributionElement", "IfcDistributionControlElement IfcDistributionFlowElement"},
    Family{"IfcDistributionControlElement",
           "IfcActuator IfcAlarm IfcController IfcFlowInstrument "
           "IfcProtectiveDeviceTrippingUnit IfcSensor IfcUnitaryControlElement"},
    Family{"IfcDistributionFlowElement",
           "IfcDistributionChamberElement IfcEnergyConversionDevice IfcFlowController "
           "IfcFlowFitting IfcFlowMovingDevice IfcFlowSegment IfcFlowStorageDevice "
           "IfcFlowTerminal IfcFlowTreatmentDevice"},
    Family{"IfcEnergyConversionDevice",
           "IfcAirToAirHeatRecovery IfcBoiler IfcBurner IfcChiller IfcCoil IfcCondenser "
           "IfcCooledBeam IfcCoolingTower IfcElectricGenerator IfcElectricMotor IfcEngine "
           "IfcEvaporativeCooler IfcEvaporator IfcHeatExchanger IfcHumidifier "
           "IfcMotorConnection IfcSolarDevice IfcTransformer IfcTubeBundle "
           "IfcUnitaryEquipment"},
    Family{"IfcFlowController",
           "IfcAirTerminalBox IfcDamper IfcDistributionBoard IfcElectricDistributionBoard "
           "IfcElectricDistributionPoint IfcElectricTimeControl IfcFlowMeter "
           "IfcProtectiveDevice IfcSwitchingDevice IfcValve"},
    Family{"IfcFlowFitting",
           "IfcCableCarrierFitting IfcCableFitting IfcDuctFitting IfcJunctionBox IfcPipeFitting"},
    Family{"IfcFlowMovingDevice", "IfcCompressor IfcFan IfcPump"},
    Family{"IfcFlowSegment",
           "IfcCableCarrierSegment IfcCableSegment IfcConveyorSegment IfcDuctSegment "
           "IfcPipeSegment"},
    Family{"IfcFlowStorageDevice", "IfcElectricFlowStorageDevice IfcTank"},
    Family{"IfcFlowTerminal",
           "IfcAirTerminal IfcAudioVisualAppliance IfcCommunicationsAppliance "
           "IfcElectricAppliance IfcElectricHeater IfcFireSuppressionTerminal IfcGasTerminal "
           "IfcLamp IfcLightFixture IfcLiquidTerminal IfcMedicalDevice "
           "IfcMobileTelecommunicationsAppliance IfcOutlet IfcSanitaryTerminal IfcSpaceHeater "
           "IfcStackTerminal IfcWasteTerminal"},
    Family{"IfcFlowTreatmentDevice",
           "IfcDuctSilencer IfcElectricFlowTreatmentDevice IfcFilter IfcInterceptor"},
};

std::map<std::string_view, std::string_view> ReadSupertypes() {
    std::map<std::string_view, std::string_view> supertypes;
    for (const Family& family : kFamilies) {
        std::string_view rest = family.kinds;
        while (!rest.empty()) {
            const std::size_t end = std::min(rest.find(' '), rest.size());
            supertypes.emplace(rest.substr(0, end), family.supertype);
            rest.remove_prefix(std::min(end + 1, rest.size()));
        }
    }
    return supertypes;
}

std::string_view SupertypeOf(std::string_view ifcClass) {
    static const std::map<std::string_view, std::string_view> supertypes = ReadSupertypes();
    const auto found = supertypes.find(ifcClass);
    return found == supertypes.end() ? std::string_view() : found->second;
}

}  // namespace

std::vector<std::string> ClassAndSupertypes(std::string_view ifcClass) {
    std::vector<std::string> chain;
    for (std::string_view at = ifcClass; !at.empty(); at = SupertypeOf(at))
        chain.emplace_back(at);
    return chain;
}

bool IsKindOf(std::string_view ifcClass, std::string_view ancestor) {
    for (std::string_view at = ifcClass; !at.empty(); at = SupertypeOf(at)) {
        if (at == ancestor) return true;
    }
    return false;
}

std::string ClassOfType(std::string_view typeClass) {
    for (const std::string_view ending : {std::string_view("Type"), std::string_view("Style")}) {
        if (typeClass.size() > ending.size() && typeClass.ends_with(ending)) {
            return std::string(typeClass.substr(0, typeClass.size() - ending.size()));
        }
    }
    return {};
}

}  // namespace ifchost
