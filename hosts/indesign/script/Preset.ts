// The preset that an export goes by: made for it, and removed after it.
namespace Hopbox {
  const presetName = "Hopbox export (temporary)"

  // An item of an enumeration by its name.
  function itemOf<Item>(items: { [name: string]: Item | string }, value: Json): Item {
    const item = items[String(value)]
    if (item === undefined || typeof item === "string") throw new Error("no item " + String(value))
    return item
  }

  // Sets one property. False for one that this script does not know.
  function setEnumeration(preset: PDFExportPreset, name: string, value: Json): boolean {
    switch (name) {
      case "acrobatCompatibility": preset.acrobatCompatibility = itemOf<AcrobatCompatibility>(AcrobatCompatibility, value); return true
      case "standardsCompliance": preset.standardsCompliance = itemOf<PDFXStandards>(PDFXStandards, value); return true
      case "pdfColorSpace": preset.pdfColorSpace = itemOf<PDFColorSpace>(PDFColorSpace, value); return true
      case "compressionType": preset.compressionType = itemOf<PDFCompressionType>(PDFCompressionType, value); return true
      case "pdfMarkType": preset.pdfMarkType = itemOf<MarkTypes>(MarkTypes, value); return true
      case "printerMarkWeight": preset.printerMarkWeight = itemOf<PDFMarkWeight>(PDFMarkWeight, value); return true
      case "colorBitmapCompression": preset.colorBitmapCompression = itemOf<BitmapCompression>(BitmapCompression, value); return true
      case "colorBitmapQuality": preset.colorBitmapQuality = itemOf<CompressionQuality>(CompressionQuality, value); return true
      case "colorBitmapSampling": preset.colorBitmapSampling = itemOf<Sampling>(Sampling, value); return true
      case "grayscaleBitmapCompression": preset.grayscaleBitmapCompression = itemOf<BitmapCompression>(BitmapCompression, value); return true
      case "grayscaleBitmapQuality": preset.grayscaleBitmapQuality = itemOf<CompressionQuality>(CompressionQuality, value); return true
      case "grayscaleBitmapSampling": preset.grayscaleBitmapSampling = itemOf<Sampling>(Sampling, value); return true
      case "monochromeBitmapCompression": preset.monochromeBitmapCompression = itemOf<MonoBitmapCompression>(MonoBitmapCompression, value); return true
      case "monochromeBitmapSampling": preset.monochromeBitmapSampling = itemOf<Sampling>(Sampling, value); return true
      default: return false
    }
  }

  function setNumber(preset: PDFExportPreset, name: string, value: number): boolean {
    switch (name) {
      case "subsetFontsBelow": preset.subsetFontsBelow = value; return true
      case "colorBitmapSamplingDPI": preset.colorBitmapSamplingDPI = value; return true
      case "thresholdToCompressColor": preset.thresholdToCompressColor = value; return true
      case "grayscaleBitmapSamplingDPI": preset.grayscaleBitmapSamplingDPI = value; return true
      case "thresholdToCompressGray": preset.thresholdToCompressGray = value; return true
      case "monochromeBitmapSamplingDPI": preset.monochromeBitmapSamplingDPI = value; return true
      case "thresholdToCompressMonochrome": preset.thresholdToCompressMonochrome = value; return true
      default: return false
    }
  }

  function setText(preset: PDFExportPreset, name: string, value: string): boolean {
    switch (name) {
      case "bleedTop": preset.bleedTop = value; return true
      case "bleedBottom": preset.bleedBottom = value; return true
      case "bleedInside": preset.bleedInside = value; return true
      case "bleedOutside": preset.bleedOutside = value; return true
      case "pageMarksOffset": preset.pageMarksOffset = value; return true
      case "pdfDestinationProfile": preset.pdfDestinationProfile = value; return true
      case "pdfXProfile": preset.pdfXProfile = value; return true
      case "outputCondition": preset.outputCondition = value; return true
      case "outputConditionName": preset.outputConditionName = value; return true
      case "ocRegistry": preset.ocRegistry = value; return true
      default: return setEnumeration(preset, name, value)
    }
  }

  function setSwitch(preset: PDFExportPreset, name: string, value: boolean): boolean {
    switch (name) {
      case "compressTextAndLineArt": preset.compressTextAndLineArt = value; return true
      case "optimizePDF": preset.optimizePDF = value; return true
      case "generateThumbnails": preset.generateThumbnails = value; return true
      case "cropMarks": preset.cropMarks = value; return true
      case "bleedMarks": preset.bleedMarks = value; return true
      case "registrationMarks": preset.registrationMarks = value; return true
      case "colorBars": preset.colorBars = value; return true
      case "pageInformationMarks": preset.pageInformationMarks = value; return true
      case "useDocumentBleedWithPDF": preset.useDocumentBleedWithPDF = value; return true
      case "includeSlugWithPDF": preset.includeSlugWithPDF = value; return true
      case "exportReaderSpreads": preset.exportReaderSpreads = value; return true
      case "includeBookmarks": preset.includeBookmarks = value; return true
      case "includeHyperlinks": preset.includeHyperlinks = value; return true
      case "exportLayers": preset.exportLayers = value; return true
      case "includeICCProfiles": preset.includeICCProfiles = value; return true
      case "includeStructure": preset.includeStructure = value; return true
      case "exportNonprintingObjects": preset.exportNonprintingObjects = value; return true
      case "exportGuidesAndGrids": preset.exportGuidesAndGrids = value; return true
      case "omitBitmaps": preset.omitBitmaps = value; return true
      case "omitEPS": preset.omitEPS = value; return true
      case "omitPDF": preset.omitPDF = value; return true
      case "simulateOverprint": preset.simulateOverprint = value; return true
      case "cropImagesToFrames": preset.cropImagesToFrames = value; return true
      case "ignoreSpreadOverrides": preset.ignoreSpreadOverrides = value; return true
      default: return false
    }
  }

  function setProperty(preset: PDFExportPreset, name: string, value: Json): boolean {
    if (typeof value === "boolean") return setSwitch(preset, name, value)
    if (typeof value === "number") return setNumber(preset, name, value)
    return typeof value === "string" && setText(preset, name, value)
  }

  // Removes presets of exports that did not come to their end.
  export function removeLeftPresets(): void {
    const presets = app.pdfExportPresets
    for (let i = presets.length - 1; i >= 0; i--) {
      const preset = presets.item(i)
      if (preset.name.indexOf(presetName) === 0) preset.remove()
    }
  }

  // Works with a preset of these properties, pairs of name and value in their order. One that can't be set
  // ends the export: its PDF would be another than was asked for.
  export function withPreset(properties: Json[], work: (preset: PDFExportPreset) => void): void {
    removeLeftPresets()
    const preset = app.pdfExportPresets.add({ name: presetName })
    try {
      for (let i = 0; i < properties.length; i++) {
        const pair = properties[i]
        if (!(pair instanceof Array) || !setProperty(preset, String(pair[0]), pair[1])) throw new Stop(UNSUPPORTED)
      }
      work(preset)
    } finally {
      preset.remove()
    }
  }
}
