// Point groups, GPS groups and total-station jobs. Every named survey point
// answers CEgn's operations. Values never set are undefined (1.7e200), except
// GPS quality, satellite counts and covariances, which start at 0.
#pragma once
#include <cstdint>
#include <memory>
#include <vector>

#include "host/target_drawing.h"
#include "vesk/string.h"
#include "vesk/undefined.h"

class CEgn {
public:
    virtual ~CEgn() = default;
    const vesk::String& GetNome() const { return nome_; }
    const vesk::String& GetSecScri() const { return secScri_; }
    double GetCoordX() const { return x_; }
    double GetCoordY() const { return y_; }
    double GetCoordZ() const { return z_; }
    void SetNome(const vesk::String& n) { nome_ = n; }
    void SetSecScri(const vesk::String& d) { secScri_ = d; }
    void SetCoords(double x, double y, double z) { x_ = x; y_ = y; z_ = z; }

private:
    vesk::String nome_;
    vesk::String secScri_;
    double x_ = vesk::kUndefined;
    double y_ = vesk::kUndefined;
    double z_ = vesk::kUndefined;
};

class CPunPnt : public CEgn {};

class CGrpPnt : public CTargetDrawingHolder {
public:
    explicit CGrpPnt(const vesk::String& name) : name_(name) {}
    // Four labels; the first is the group's name.
    void GetLabels(vesk::String& name, vesk::String& l2, vesk::String& l3, vesk::String& l4) const {
        name = name_; l2.clear(); l3.clear(); l4.clear();
    }
    const vesk::String& GetName() const { return name_; }
    std::vector<std::unique_ptr<CPunPnt>>& Points() { return pts_; }

private:
    vesk::String name_;
    std::vector<std::unique_ptr<CPunPnt>> pts_;
};

class CLibPnt : public CTargetDrawingHolder {
public:
    int GetGrpArSize() const { return static_cast<int>(grps_.size()); }
    CGrpPnt* GetGrpAt(int i) const { return Valid(i) ? grps_[static_cast<size_t>(i)].get() : nullptr; }
    int GetPtnArSize(int grp) const { return Valid(grp) ? static_cast<int>(grps_[static_cast<size_t>(grp)]->Points().size()) : 0; }
    CPunPnt* GetPtnAt(int grp, int i) const;
    bool GetIndiciDiGrp(const CGrpPnt* g, int& grp) const;
    CGrpPnt* AddGrp(const vesk::String& name);

private:
    bool Valid(int i) const { return i >= 0 && static_cast<size_t>(i) < grps_.size(); }
    std::vector<std::unique_ptr<CGrpPnt>> grps_;
};

class CPunGps : public CEgn {
public:
    CPunGps(double lat, double lon, double elev) : lat_(lat), lon_(lon), elev_(elev) {}
    double GetLat() const { return lat_; }
    double GetLong() const { return lon_; }
    double GetElev() const { return elev_; }
    int GetQua() const { return qua_; }
    uint8_t GetNuGpsUsed() const { return nuGps_; }
    uint8_t GetNuGloUsed() const { return nuGlo_; }
    float GetPosCov_xx() const { return cov_[0]; }
    float GetPosCov_xy() const { return cov_[1]; }
    float GetPosCov_xz() const { return cov_[2]; }
    float GetPosCov_yy() const { return cov_[3]; }
    float GetPosCov_yz() const { return cov_[4]; }
    float GetPosCov_zz() const { return cov_[5]; }
    void SetQuality(int q, uint8_t gps, uint8_t glo) { qua_ = q; nuGps_ = gps; nuGlo_ = glo; }
    // xx, xy, xz, yy, yz, zz
    void SetCovariances(const float c[6]) { for (int i = 0; i < 6; ++i) cov_[i] = c[i]; }

private:
    double lat_, lon_, elev_;
    int qua_ = 0;
    uint8_t nuGps_ = 0;
    uint8_t nuGlo_ = 0;
    float cov_[6] = {0, 0, 0, 0, 0, 0};
};

// A GPS group is itself the point of its base station: GetNome is the base
// station's name, GetNomeGrp the group's own name.
class CGrpGps : public CEgn, public CTargetDrawingHolder {
public:
    explicit CGrpGps(const vesk::String& nomeGrp) : nomeGrp_(nomeGrp) {}
    const vesk::String& GetNomeGrp() const { return nomeGrp_; }
    double GetBaseLat() const { return lat_; }
    double GetBaseLong() const { return lon_; }
    double GetBaseElev() const { return elev_; }
    double GetBaseAltAnt() const { return altAnt_; }
    void SetLatLonElev(double lat, double lon, double elev) { lat_ = lat; lon_ = lon; elev_ = elev; }
    void SetAltAnt(double h) { altAnt_ = h; }
    std::vector<std::unique_ptr<CPunGps>>& Points() { return pts_; }

private:
    vesk::String nomeGrp_;
    double lat_ = vesk::kUndefined;
    double lon_ = vesk::kUndefined;
    double elev_ = vesk::kUndefined;
    double altAnt_ = vesk::kUndefined;
    std::vector<std::unique_ptr<CPunGps>> pts_;
};

class CLibGps : public CTargetDrawingHolder {
public:
    int GetGrpArSize() const { return static_cast<int>(grps_.size()); }
    CGrpGps* GetGrpAt(int i) const { return Valid(i) ? grps_[static_cast<size_t>(i)].get() : nullptr; }
    int GetPunArSize(int grp) const { return Valid(grp) ? static_cast<int>(grps_[static_cast<size_t>(grp)]->Points().size()) : 0; }
    CPunGps* GetPunAt(int grp, int i) const;
    bool GetIndiciDiGrp(const CGrpGps* g, int& grp) const;
    CGrpGps* AddGrp(const vesk::String& name);

private:
    bool Valid(int i) const { return i >= 0 && static_cast<size_t>(i) < grps_.size(); }
    std::vector<std::unique_ptr<CGrpGps>> grps_;
};

// A total-station observation: the observed point with target height, slope
// distance, zenith angle and horizontal angle, as the instrument gave them.
class CPun : public CEgn {
public:
    CPun(double altPri, double d0, double d1, double d2) : altPri_(altPri), d0_(d0), d1_(d1), d2_(d2) {}
    double GetAltPri() const { return altPri_; }
    double GetDato0() const { return d0_; }  // slope distance
    double GetDato1() const { return d1_; }  // zenith angle
    double GetDato2() const { return d2_; }  // horizontal angle

private:
    double altPri_, d0_, d1_, d2_;
};

class CSta : public CEgn {
public:
    explicit CSta(double altStr) : altStr_(altStr) {}
    double GetAltStr() const { return altStr_; }
    std::vector<std::unique_ptr<CPun>>& Points() { return pts_; }
    const std::vector<std::unique_ptr<CPun>>& Points() const { return pts_; }

private:
    double altStr_;
    std::vector<std::unique_ptr<CPun>> pts_;
};

class CJob : public CEgn, public CTargetDrawingHolder {
public:
    explicit CJob(const vesk::String& name) { SetNome(name); }
    std::vector<std::unique_ptr<CSta>>& Stations() { return stas_; }
    const std::vector<std::unique_ptr<CSta>>& Stations() const { return stas_; }

private:
    std::vector<std::unique_ptr<CSta>> stas_;
};

class CLibCmp : public CTargetDrawingHolder {
public:
    int GetJobArSize() const { return static_cast<int>(jobs_.size()); }
    CJob* GetJobAt(int i) const { return ValidJob(i) ? jobs_[static_cast<size_t>(i)].get() : nullptr; }
    int GetStaArSize(int job) const;
    CSta* GetStaAt(int job, int i) const;
    int GetPunArSize(int job, int sta) const;
    CPun* GetPunAt(int job, int sta, int i) const;
    bool GetIndiciDiJob(const CJob* j, int& job) const;
    bool GetIndiciDiSta(const CSta* s, int& job, int& sta) const;
    CJob* AddJob(const vesk::String& name);

private:
    bool ValidJob(int i) const { return i >= 0 && static_cast<size_t>(i) < jobs_.size(); }
    std::vector<std::unique_ptr<CJob>> jobs_;
};
